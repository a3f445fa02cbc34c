// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionEnd.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QSocketNotifier>
#include <QThread>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

// Accessed by the signal handler.
std::atomic<int> wakeUpEnd = -1;
std::atomic<bool> isServed = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void TakeSignal(int /*number*/)
{
    // The event loop takes the first signal. A second one means that this took too long.
    if (!isServed.exchange(false)) {
        std::_Exit(EXIT_SUCCESS);
    }
    const char byte = 1;
    if (write(wakeUpEnd, &byte, 1) != 1) {
        std::_Exit(EXIT_SUCCESS);
    }
}

// Returns the read end; the handler writes to the other.
int OpenPipe()
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        qFatal("No pipe for signals");
    }
    wakeUpEnd = ends[1];
    return ends[0];
}

// nohup starts the program with HUP ignored, a shell's "&" with INT ignored, so that it outlives the
// terminal. TERM is always handled: it is sent to this process itself.
bool IsTaken(int number, const struct sigaction& found)
{
    return number == SIGTERM || found.sa_handler != SIG_IGN;
}

} // namespace

class SessionEnd::Listener final : public QObject
{
public:
    Listener();
    ~Listener() override;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void EnterMainLoop(std::function<void()> tidyUp);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void End();

    QSocketNotifier m_notifier;
    std::function<void()> m_tidyUp;
    /// The previous actions of TERM, INT and HUP.
    std::array<struct sigaction, kSignals.size()> m_found{};
};

SessionEnd::Listener::Listener()
    : m_notifier(OpenPipe(), QSocketNotifier::Read)
{
    m_notifier.setEnabled(false);
    connect(&m_notifier, &QSocketNotifier::activated, this, &Listener::End);
    struct sigaction action = {};
    action.sa_handler = TakeSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), nullptr, &m_found.at(i));
        if (IsTaken(kSignals.at(i), m_found.at(i))) {
            sigaction(kSignals.at(i), &action, nullptr);
        }
    }
}

SessionEnd::Listener::~Listener()
{
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), &m_found.at(i), nullptr);
    }
    m_notifier.setEnabled(false);
    close(static_cast<int>(m_notifier.socket()));
    close(wakeUpEnd.exchange(-1));
}

void SessionEnd::Listener::EnterMainLoop(std::function<void()> tidyUp)
{
    m_tidyUp = std::move(tidyUp);
    // At log-out the session manager's request arrives as QEvent::Quit. Qt would first close each window, and
    // a disabled one, such as the main window under a dialog, refuses.
    QCoreApplication::instance()->installEventFilter(this);
    m_notifier.setEnabled(true);
    isServed = true;
}

bool SessionEnd::Listener::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) {
        return false;
    }
    End();
    return true;
}

void SessionEnd::Listener::End()
{
    m_notifier.setEnabled(false);
    m_tidyUp();
    if (QThread::currentThread()->loopLevel() > 1) {
        // A handler waits in a nested loop, for a box or a reply. The user gave no answer, so it must not
        // continue.
        std::_Exit(EXIT_SUCCESS);
    }
    QCoreApplication::exit(EXIT_SUCCESS);
}

SessionEnd::SessionEnd()
    : m_listener(std::make_unique<Listener>())
{
}

SessionEnd::~SessionEnd() = default;

void SessionEnd::EnterMainLoop(std::function<void()> tidyUp)
{
    m_listener->EnterMainLoop(std::move(tidyUp));
}
