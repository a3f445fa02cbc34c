// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SessionEnd.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <windows.h>

#include <cstdlib>

/// Takes the messages of the session, which each window of the program gets, hidden and disabled ones too,
/// before Qt does: Qt would ask the windows.
class SessionEnd::Listener final : public QAbstractNativeEventFilter
{
public:
    Listener() { QCoreApplication::instance()->installNativeEventFilter(this); }

    void EnterMainLoop(std::function<void()> tidyUp) { m_tidyUp = std::move(tidyUp); }

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
        if (sent.wParam != FALSE) {
            End();
        }
        *result = 0;
        return true;
    }

private:
    // Windows may end the process as soon as the message is answered, and with an exit code of its own.
    void End()
    {
        if (m_tidyUp) {
            m_tidyUp();
        }
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
