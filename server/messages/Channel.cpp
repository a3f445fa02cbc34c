// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Channel.h"

#include <algorithm>
#include <functional>

namespace beacond {

Channel::Channel(const ChannelOptions& options)
    : m_name(options.name)
    , m_kind(options.kind)
    , m_perSecond(options.perSecond)
    , m_connections(static_cast<int>(options.connections))
    , m_price(options.price)
    , m_timeout(options.timeout)
{
}

std::optional<Channel::Clock::time_point> Channel::TakeSlot(Use use)
{
    using namespace std::chrono_literals;
    constexpr auto kAhead = 100ms;
    const auto interval =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1 / m_perSecond));
    const std::lock_guard lock(m_mutex);
    const Clock::time_point now = Clock::now();
    const Clock::time_point slot = std::max(m_nextSlot, now);
    const Use other = use == Use::Text ? Use::Answer : Use::Text;
    // A faster channel has slots for both.
    const bool isOthersTurn =
        interval > kAhead && m_lastUse == use && m_waiting[static_cast<std::size_t>(other)] > now - kAhead;
    if (slot > now + kAhead || isOthersTurn) {
        m_waiting[static_cast<std::size_t>(use)] = now;
        return std::nullopt;
    }
    m_waiting[static_cast<std::size_t>(use)] = {};
    m_lastUse = use;
    m_nextSlot = slot + interval;
    return slot;
}

SendResult Channel::Send(const OutgoingMessage& message) noexcept
{
    SendResult result = TrySend(message);
    Count(result.handover, message.address);
    return result;
}

std::int64_t Channel::FailuresInARow() const
{
    const std::lock_guard lock(m_mutex);
    return m_failuresInARow + static_cast<std::int64_t>(m_refusedInARow.size());
}

void Channel::Count(Handover handover, const std::string& address)
{
    constexpr std::size_t kMostRefused = 1000;
    const std::lock_guard lock(m_mutex);
    if (handover == Handover::Accepted) {
        m_failuresInARow = 0;
        m_refusedInARow.clear();
    } else if (handover != Handover::Refused) {
        m_failuresInARow += m_isAborted ? 0 : 1;
    } else if (m_refusedInARow.size() < kMostRefused) {
        m_refusedInARow.insert(std::hash<std::string>()(address));
    }
}

SendResult Channel::TrySend(const OutgoingMessage& message) noexcept
{
    try {
        if (m_isAborted) {
            return {Handover::RetryLater, "the service ends"};
        }
        return SendNow(message);
    } catch (const std::exception& error) {
        return {Handover::RetryLater, error.what()};
    }
}

} // namespace beacond
