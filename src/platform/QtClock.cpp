// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtClock.h"

#include "platform/TimeZone.h"

#include <QTimer>

namespace {

class IntervalTimer final : public Timer
{
public:
    IntervalTimer()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1000);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { CallHandler(); });
    }
    void SetInterval(int milliseconds) override { m_timer.setInterval(milliseconds); }
    void SetEnabled(bool enabled) override
    {
        if (enabled != m_timer.isActive()) {
            enabled ? m_timer.start() : m_timer.stop();
        }
    }
    [[nodiscard]] bool IsEnabled() const override { return m_timer.isActive(); }

private:
    QTimer m_timer;
};

class SecondTicker final : public Timer
{
public:
    explicit SecondTicker(const Clock& clock)
        : m_clock(clock)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Fire(); });
    }
    void SetInterval(int /*milliseconds*/) override {}
    void SetEnabled(bool enabled) override
    {
        if (enabled == m_enabled) {
            return;
        }
        m_enabled = enabled;
        if (enabled) {
            m_phase = SecondPhase(m_clock.Now());
            m_timer.start(m_phase.MillisecondsToNext(m_clock.Now()));
        } else {
            m_timer.stop();
        }
    }
    [[nodiscard]] bool IsEnabled() const override { return m_enabled; }

private:
    void Fire()
    {
        const QDateTime now = m_clock.Now();
        // Start before the handler runs: it may serve events for a long time, and the ticks must continue.
        m_timer.start(m_phase.MillisecondsToNext(now));
        if (m_phase.Enter(now)) {
            CallHandler();
        }
    }

    const Clock& m_clock;
    QTimer m_timer;
    SecondPhase m_phase;
    bool m_enabled = false;
};

} // namespace

QDateTime QtClock::Now() const
{
    ReadTimeZone();
    return QDateTime::currentDateTime();
}

std::unique_ptr<Timer> QtTimers::CreateTimer()
{
    return std::make_unique<IntervalTimer>();
}

std::unique_ptr<Timer> QtTimers::CreateSecondTicker()
{
    return std::make_unique<SecondTicker>(m_clock);
}
