// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace beacond {

/// When the operator is told.
struct OperatorLimits
{
    std::int64_t outboxMinutes = 5;   ///< age of the oldest waiting text
    std::int64_t channelFailures = 5; ///< failures of one channel in a row
};

/// The state of the sending.
struct SendingFigures
{
    std::chrono::seconds oldestWaiting{0};
    std::map<std::string, std::int64_t> failuresInARow{}; ///< by channel
    std::int64_t spentToday = 0;
    std::int64_t spendPerDay = 0; ///< 0 for no limit
};

/// A text for the operator, without addresses.
struct OperatorNotice
{
    std::string text;
    bool isOver = false; ///< the event has ended

    bool operator==(const OperatorNotice&) const = default;
};

/// Decides when the operator is told that the outbox is old, that a channel fails, or that 80 per cent of the
/// day's spending are reached. An event is told at once, then once an hour while it lasts, and once more when
/// it is over; an event of one kind at most once an hour, however often it begins. Not thread-safe.
class OperatorAlerts final
{
public:
    /// Of a steady clock.
    using Time = std::chrono::steady_clock::time_point;

    explicit OperatorAlerts(const OperatorLimits& limits)
        : m_limits(limits)
    {
    }

    /// Call it every few seconds.
    /// @return the notices to send now
    [[nodiscard]] std::vector<OperatorNotice> Update(const SendingFigures& figures, Time now);

private:
    struct Event
    {
        bool isTold = false; ///< and not over
        Time lastTold;
        bool wasEverTold = false;
    };

    void UpdateEvent(const std::string& kind, bool isOn, bool isOver, const std::string& text,
                     const std::string& overText, Time now, std::vector<OperatorNotice>& notices);

    const OperatorLimits m_limits;
    std::map<std::string, Event> m_events;
};

} // namespace beacond
