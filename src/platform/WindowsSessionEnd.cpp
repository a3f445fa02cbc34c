// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionEnd.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <windows.h>

#include <cstdlib>

/// Takes the messages of the session, which each window of the program gets, hidden and disabled ones too,
/// before Qt does: Qt would ask the windows.
class SessionEnd::Listener final : public QObject, public QAbstractNativeEventFilter
{
public:
    Listener() { QCoreApplication::instance()->installNativeEventFilter(this); }

    void EnterMainLoop(std::function<void()> tidyUp)
    {
        m_tidyUp = std::move(tidyUp);
        // A program that asks each window to close asks that of the tray icon too, and Qt makes a
        // QEvent::Quit of it, which a disabled window would refuse.
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) {
            return false;
        }
        TidyUpAndEnd();
        return true;
    }

    bool nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* result) override
    {
        const MSG& sent = *static_cast<const MSG*>(message);
        if (sent.message == WM_QUERYENDSESSION) {
            *result = TRUE;
            return true;
        }
        if (sent.message != WM_ENDSESSION) {
            return false;
        }
        if (sent.wParam != FALSE && (sent.lParam & ENDSESSION_CLOSEAPP) != 0) {
            TidyUpAndEnd();
        } else if (sent.wParam != FALSE) {
            // The shell ends too: it drops the icon itself, and may not answer any more.
            End();
        }
        *result = 0;
        return true;
    }

private:
    void TidyUpAndEnd()
    {
        if (m_tidyUp) {
            m_tidyUp();
        }
        End();
    }

    // Windows may end the process as soon as the message is answered, and with an exit code of its own.
    static void End()
    {
        // Not exit(): a library that waits for its threads would hold up the session.
        ::TerminateProcess(::GetCurrentProcess(), EXIT_SUCCESS);
    }

    std::function<void()> m_tidyUp;
};

SessionEnd::SessionEnd()
    : m_listener(std::make_unique<Listener>())
{
}

SessionEnd::~SessionEnd() = default;

void SessionEnd::EnterMainLoop(std::function<void()> tidyUp)
{
    m_listener->EnterMainLoop(std::move(tidyUp));
}
