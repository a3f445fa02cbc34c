// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The process of the program.
class Process
{
public:
    Process() = default;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    virtual ~Process() = default;

    /// Ends the process at once as a failure, without unloading windows. The fake of the tests returns, so a
    /// caller must return right after it.
    virtual void End() = 0;
    /// Blocks the thread without serving events.
    virtual void Sleep(int milliseconds) = 0;
    /// The folder of the executable, without a separator at the end.
    [[nodiscard]] virtual QString ApplicationFolder() const = 0;
    /// The user's data folder of this program, without a separator at the end.
    [[nodiscard]] virtual QString UserDataFolder() const = 0;
};
