// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Sender.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>

namespace beacond {

/// Between the end of an attempt and the end of its lease: the time to store the result.
inline constexpr std::chrono::seconds kReserve{5};

/// A channel with the texts that are leased for it.
struct Sender::Feed
{
    Feed(Channel& used, boost::asio::io_context& context)
        : channel(used)
        , threads(static_cast<std::size_t>(used.Connections()))
        , changed(context, Clock::time_point::max())
        , room(context)
    {
    }

    static constexpr double kSecondsOfABatch = 5;
    static constexpr double kTextsOfAConnection = 25;
    /// For the texts of a batch that wait for a connection.
    static constexpr std::chrono::seconds kQueueTime{5};

    struct Leased
    {
        LeasedText text;
        Clock::time_point expiry;
    };

    [[nodiscard]] bool HasRoom() const { return leased.size() < Batch() / 2 + 1; }
    [[nodiscard]] std::size_t Batch() const
    {
        const double most = kTextsOfAConnection * channel.Connections();
        return static_cast<std::size_t>(
            std::clamp(std::ceil(channel.PerSecond() * kSecondsOfABatch), 1.0, most));
    }
    [[nodiscard]] std::chrono::seconds LeaseTime() const
    {
        const auto seconds = static_cast<std::int64_t>(static_cast<double>(Batch()) / channel.PerSecond());
        return std::chrono::seconds(seconds) + kQueueTime + 2 * channel.Timeout() + kReserve;
    }

    Channel& channel;
    boost::asio::thread_pool threads;
    std::deque<Leased> leased;
    boost::asio::steady_timer changed; ///< cancelled when there are new leases
    boost::asio::steady_timer room;    ///< cancelled when there is room for further leases
    ChannelFigures figures;
};

} // namespace beacond
