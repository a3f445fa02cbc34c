// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionEnd.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

// What a signal handler may touch.
std::atomic<int> wakeUpEnd = -1;
std::atomic<bool> isServed = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void TakeSignal(int /*number*/)
{
    // Only the first one is waited for. A second one means that the first was not quick enough.
    if (!isServed.exchange(false)) {
        std::_Exit(EXIT_SUCCESS);
    }
    const char byte = 1;
    if (write(wakeUpEnd, &byte, 1) != 1) {
        std::_Exit(EXIT_SUCCESS);
    }
}

// The end that is read from; the other one goes to the handler.
int OpenPipe()
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        qFatal("No pipe for signals");
    }
    wakeUpEnd = ends[1];
    return ends[0];
}

// Whoever started the program may want it to outlive a terminal: nohup has HUP ignored, a shell's "&" has
// INT. The request to terminate is meant for this very program.
bool IsTaken(int number, const struct sigaction& found)
{
    return number == SIGTERM || found.sa_handler != SIG_IGN;
}

} // namespace

SessionEnd::SessionEnd()
    : m_notifier(OpenPipe(), QSocketNotifier::Read)
{
    m_notifier.setEnabled(false);
    connect(&m_notifier, &QSocketNotifier::activated, this, &SessionEnd::End);
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

SessionEnd::~SessionEnd()
{
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), &m_found.at(i), nullptr);
    }
    m_notifier.setEnabled(false);
    close(static_cast<int>(m_notifier.socket()));
    close(wakeUpEnd.exchange(-1));
}

void SessionEnd::EnterMainLoop(std::function<void()> tidyUp)
{
    m_tidyUp = std::move(tidyUp);
    // The session manager's word at log-out arrives as a quit. Qt would first ask each window to close, and a
    // disabled one, as the main window under a dialog is, refuses.
    QCoreApplication::instance()->installEventFilter(this);
    m_notifier.setEnabled(true);
    isServed = true;
}

bool SessionEnd::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) {
        return false;
    }
    End();
    return true;
}

void SessionEnd::End()
{
    m_notifier.setEnabled(false);
    m_tidyUp();
    if (QThread::currentThread()->loopLevel() > 1) {
        // A handler waits in a loop of its own, under a box or for a reply. The user gave no answer,
        // so it must not go on.
        std::_Exit(EXIT_SUCCESS);
    }
    QCoreApplication::exit(EXIT_SUCCESS);
}
