// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The process that the program runs in.
class Process
{
public:
    Process() = default;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    virtual ~Process() = default;

    /// Ends the process at once: nothing is unloaded, nothing is tidied up. Returns in tests only, so that
    /// callers return right behind it.
    virtual void End() = 0;
    /// Blocks the thread; no event is served.
    virtual void Sleep(int milliseconds) = 0;
    /// The folder that holds the program, without a separator at the end.
    [[nodiscard]] virtual QString ApplicationFolder() const = 0;
    /// The user's data folder of this program, without a separator at the end.
    [[nodiscard]] virtual QString UserDataFolder() const = 0;
};
