// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/OperatorAlerts.h"

namespace beacond {

namespace {

using namespace std::chrono_literals;

constexpr auto kBetweenNotices = 1h;
constexpr std::int64_t kPartOfSpending = 80; // per cent

} // namespace

std::vector<OperatorNotice> OperatorAlerts::Update(const SendingFigures& figures, Time now)
{
    std::vector<OperatorNotice> notices;
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(figures.oldestWaiting).count();
    const bool isOld = minutes >= m_limits.outboxMinutes;
    UpdateEvent("outbox", isOld, !isOld,
                "the oldest text in the outbox has waited for " + std::to_string(minutes) + " minutes",
                "the outbox has no old texts any more", now, notices);
    for (const auto& [name, failures] : figures.failuresInARow) {
        // One success ends the event; fewer failures than the limit do not.
        UpdateEvent("channel " + name, failures >= m_limits.channelFailures, failures == 0,
                    "the channel \"" + name + "\" fails: " + std::to_string(failures) +
                        " messages in a row could not be sent",
                    "the channel \"" + name + "\" works again", now, notices);
    }
    const bool isSpent =
        figures.spendPerDay > 0 && figures.spentToday * 100 >= figures.spendPerDay * kPartOfSpending;
    UpdateEvent("spending", isSpent, !isSpent,
                std::to_string(figures.spentToday) + " of the " + std::to_string(figures.spendPerDay) +
                    " that messages may cost in a day are spent",
                "the spending of the day is below 80 per cent again", now, notices);
    return notices;
}

void OperatorAlerts::UpdateEvent(const std::string& kind, bool isOn, bool isOver, const std::string& text,
                                 const std::string& overText, Time now, std::vector<OperatorNotice>& notices)
{
    Event& event = m_events[kind];
    if (isOn && (!event.wasEverTold || now - event.lastTold >= kBetweenNotices)) {
        event = {true, now, true};
        notices.push_back({text, false});
    } else if (isOver && event.isTold) {
        event.isTold = false;
        notices.push_back({overText, true});
    }
}

} // namespace beacond
