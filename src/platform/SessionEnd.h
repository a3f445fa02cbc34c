// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

/// Ends the program when the session asks for it: on Linux by a signal (TERM, INT, HUP) or by the session
/// manager at log-out, on Windows by the messages of log-off, shutdown and installers. The program ends at
/// once with exit code 0, also while windows or boxes are open; it asks nothing and writes nothing. INT and
/// HUP stay ignored if they were ignored at the start. One object in a process.
class SessionEnd final
{
public:
    /// Until EnterMainLoop the session ends the process directly: events are not served yet.
    SessionEnd();
    ~SessionEnd();
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    /// From now on the event loop ends the program.
    /// @param tidyUp called before the end; must neither wait nor throw
    void EnterMainLoop(std::function<void()> tidyUp);

private:
    class Listener;

    std::unique_ptr<Listener> m_listener;
};
