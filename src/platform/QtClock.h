// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

/// The computer's clock in the computer's time zone.
class QtClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override;
};

/// Keeps a ticker in phase with the wall clock: says how long to wait for the next second, and whether the
/// second that has been reached is a new one. A timer that fires a little early meets its second a second
/// time and is sent back to wait; a clock that is set, forward or back, is followed from the next call on.
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

    /// True if @p now lies in another second than the one entered last.
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
