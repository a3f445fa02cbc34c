// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

namespace beacond {

/// Counters of the sender, for the metrics.
struct SenderFigures
{
    using Count = std::atomic<std::uint64_t>;

    Count sent{0};
    Count refused{0};   ///< by the provider, for good
    Count retried{0};   ///< attempts after the first one
    Count uncertain{0}; ///< attempts after which the provider may have the text
    Count doubled{0};   ///< attempts for a text that the provider may already have
    Count givenUp{0};   ///< not sent within ten minutes
    Count capped{0};    ///< beyond the texts of a device in a day
    // The state of the outbox, measured every second.
    Count waiting{0};
    Count leased{0};
    Count uncertainNow{0}; ///< texts that the provider may already have
    Count oldestSeconds{0};
    Count spentToday{0};
    Count isSpendReached{0}; ///< 1 while the limit of the day holds texts back
};

/// Counters of the attempts of one channel.
struct ChannelFigures
{
    SenderFigures::Count accepted{0};
    SenderFigures::Count failed{0};         ///< retried later, or unknown
    SenderFigures::Count refused{0};        ///< for good
    SenderFigures::Count failuresInARow{0}; ///< see Channel::FailuresInARow
};

} // namespace beacond
