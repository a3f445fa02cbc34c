// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>

/// Ends the program when the session asks for it: by a signal (TERM, INT, HUP) or by the session manager at
/// log-out. The program ends at once with exit code 0, also while windows or boxes are open; it asks nothing
/// and writes nothing. INT and HUP stay ignored if they were ignored at the start. One object in a process.
class SessionEnd final : public QObject
{
    Q_OBJECT

public:
    /// Until EnterMainLoop a signal ends the process directly: events are not served yet.
    SessionEnd();
    ~SessionEnd() override;
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    /// From now on the event loop ends the program.
    /// @param tidyUp called before the end; must neither wait nor throw
    void EnterMainLoop(std::function<void()> tidyUp);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void End();

    QSocketNotifier m_notifier;
    std::function<void()> m_tidyUp;
    /// The previous actions of TERM, INT and HUP.
    std::array<struct sigaction, 3> m_found{};
};
