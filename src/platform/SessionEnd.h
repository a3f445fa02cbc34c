// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>

/// The session asks the program to end: by a signal (TERM, INT, HUP) or by the session manager at log-out.
/// The answer is a normal end, exit code 0, at once, whatever windows are open; nothing asks and nothing is
/// written. An INT or HUP that whoever started the program had ignored stays ignored. One in a process.
class SessionEnd final : public QObject
{
    Q_OBJECT

public:
    /// From here on, and until EnterMainLoop, a signal ends the process where it stands: nothing serves
    /// events yet.
    SessionEnd();
    ~SessionEnd() override;
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    /// From here on the event loop takes what the session asks.
    /// @param tidyUp runs before the end; must neither wait nor let an exception out
    void EnterMainLoop(std::function<void()> tidyUp);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void End();

    QSocketNotifier m_notifier;
    std::function<void()> m_tidyUp;
    /// What was to be done about TERM, INT and HUP before.
    std::array<struct sigaction, 3> m_found{};
};
