// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

/// The system clock in the time zone of the system.
class QtClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override;
};

/// Keeps a ticker in phase with the wall clock: the time to the next second, and whether a second is a new
/// one. If a timer fires slightly early, its second is not new and the ticker waits again. After the clock
/// has been set, forward or back, the next call uses the new time.
class SecondPhase final
{
public:
    SecondPhase() = default;
    explicit SecondPhase(const QDateTime& now)
        : m_second(now.toSecsSinceEpoch())
    {
    }

    /// 1 to 1000
    [[nodiscard]] int MillisecondsToNext(const QDateTime& now) const { return 1000 - now.time().msec(); }

    /// True if @p now is in another second than the last call.
    [[nodiscard]] bool Enter(const QDateTime& now)
    {
        const qint64 second = now.toSecsSinceEpoch();
        const bool isNew = second != m_second;
        m_second = second;
        return isNew;
    }

private:
    qint64 m_second = -1;
};

/// Timers on Qt's event loop.
class QtTimers final : public Timers
{
public:
    explicit QtTimers(const Clock& clock)
        : m_clock(clock)
    {
    }
    [[nodiscard]] std::unique_ptr<Timer> CreateTimer() override;
    [[nodiscard]] std::unique_ptr<Timer> CreateSecondTicker() override;

private:
    const Clock& m_clock;
};
