// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Address.h"
#include "messages/Channel.h"
#include "support/Report.h"

#include <boost/asio/awaitable.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace beacond {

class Channels;

/// Hands the answers to sign-ups over to the channels, each on threads of its own, since that waits for the
/// disk or the network: a channel that hangs delays no other one. Thread-safe.
class Answers final
{
public:
    /// @param report receives the reason of each failure, for the log
    Answers(const Channels& channels, Report report);
    ~Answers();
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;

    struct Result
    {
        Handover handover;
        bool isBusy; ///< the channel has not tried it: too many messages wait
    };
    /// Returns when the message has been handed over, or not. RetryLater without a channel for that kind of
    /// address. A message that has not begun after three seconds is not sent, so that the call takes the
    /// channel's Timeout and four seconds at most.
    [[nodiscard]] boost::asio::awaitable<Result> Send(Address address, std::string text);
    /// The messages that wait for a thread, for the channel or for its reply.
    [[nodiscard]] std::uint64_t Waiting() const;
    /// Waits until all messages under way have been handed over. No message is handed over afterwards.
    void Join();

private:
    struct Lane;

    Report m_report;
    std::map<std::string, std::unique_ptr<Lane>, std::less<>> m_lanes; ///< by the kind of address
};

} // namespace beacond
