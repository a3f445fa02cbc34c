// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"
#include "messages/OperatorAlerts.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/thread_pool.hpp>

#include <chrono>
#include <deque>
#include <string>

namespace beacond {

class Channel;
class Channels;
class StoreThread;

/// Tells the operator of failures of the sending: in the log, and by a message through the channel of the
/// operator's address.
class OperatorTask final
{
public:
    /// All references must outlive the coroutine.
    /// @param spendPerDay 0 for no limit
    /// @param retry time between the attempts to send a notice
    OperatorTask(StoreThread& store, const Channels& channels, const Settings::Operator& settings,
                 std::int64_t spendPerDay, std::chrono::seconds retry = std::chrono::seconds(60));

    /// Looks at the sending every five seconds. Does not end.
    [[nodiscard]] boost::asio::awaitable<void> FollowSending();
    /// Ends a message under way. Call it after the coroutine's executor has been stopped, and when the other
    /// users of the channels have ended.
    void Join();

private:
    struct Waiting
    {
        std::string text;
        std::string id;
        OperatorAlerts::Time until; ///< dropped afterwards
    };

    [[nodiscard]] boost::asio::awaitable<SendingFigures> Figures();
    void Take(const OperatorNotice& notice);
    [[nodiscard]] boost::asio::awaitable<void> SendWaiting();

    StoreThread& m_store;
    const Channels& m_channels;
    const std::string m_address;
    const std::int64_t m_spendPerDay;
    const std::chrono::seconds m_retry;
    Channel* const m_channel; ///< null for the log alone
    OperatorAlerts m_alerts;
    std::deque<Waiting> m_waiting;
    OperatorAlerts::Time m_nextAttempt;
    /// A thread for handing messages over, since that waits for the provider.
    boost::asio::thread_pool m_sender{1};
};

} // namespace beacond
