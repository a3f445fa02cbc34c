// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <functional>
#include <memory>

/// The only clock of the program: no other code reads the time.
class Clock
{
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// The local date and time.
    [[nodiscard]] virtual QDateTime Now() const = 0;
};

/// Calls its handler periodically while it is enabled. Handlers run on the user-interface thread, never
/// inside SetEnabled, and must not throw.
class Timer
{
public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    virtual ~Timer() = default;

    void SetHandler(std::function<void()> handler) { m_handler = std::move(handler); }
    /// @param milliseconds time between two calls, at least 1
    virtual void SetInterval(int milliseconds) = 0;
    /// Enabling an enabled timer does not restart it.
    virtual void SetEnabled(bool enabled) = 0;
    [[nodiscard]] virtual bool IsEnabled() const = 0;

protected:
    void CallHandler() const
    {
        if (m_handler) {
            m_handler();
        }
    }

private:
    std::function<void()> m_handler;
};

class Timers
{
public:
    Timers() = default;
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;
    virtual ~Timers() = default;

    /// A disabled timer with an interval of 1000 ms.
    [[nodiscard]] virtual std::unique_ptr<Timer> CreateTimer() = 0;
    /// A disabled timer that fires once in each second of the wall clock, just after the second begins, also
    /// after the clock has been set. SetInterval has no effect. Seconds that pass while the event loop is
    /// blocked are skipped.
    [[nodiscard]] virtual std::unique_ptr<Timer> CreateSecondTicker() = 0;
};
