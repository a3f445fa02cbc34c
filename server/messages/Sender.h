// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Channels.h"
#include "messages/SenderFigures.h"
#include "store/Store.h"
#include "support/Report.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/io_context.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace beacond {

class StoreThread;
struct Keys;

struct SenderOptions
{
    std::int64_t spendPerDay = 0; ///< see LeaseTerms
    std::string language = "en";  ///< of the texts
};

/// Sends the texts of the outbox through the channel of each device's kind. Each text is recorded as begun
/// before it is handed to the provider, and removed after the provider's receipt: if the service is killed in
/// between, at most one text for each connection of a channel is sent twice.
class Sender final
{
public:
    using Clock = std::chrono::steady_clock;

    /// @param report takes the reason of each failure, without address and text
    Sender(const Keys& keys, StoreThread& store, const Channels& channels, SenderOptions options,
           Report report);
    /// As Stop without a time.
    // NOLINTNEXTLINE(bugprone-exception-escape): see its definition
    ~Sender();
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    void Start();
    /// Begins no further text, for a Stop that follows. Does not wait. Thread-safe.
    void BeginStop();
    /// Begins no further text, waits for the texts under way until @p deadline, then aborts them. Leases that
    /// were not used are returned to the outbox.
    void Stop(Clock::time_point deadline);

    [[nodiscard]] const SenderFigures& Figures() const { return m_figures; }
    /// In the order of the channels.
    [[nodiscard]] const ChannelFigures& FiguresOf(std::size_t channel) const;

private:
    struct Feed;

    [[nodiscard]] boost::asio::awaitable<void> Fill(Feed& feed);
    [[nodiscard]] boost::asio::awaitable<bool> Lease(Feed& feed);
    [[nodiscard]] boost::asio::awaitable<void> Work(Feed& feed);
    [[nodiscard]] boost::asio::awaitable<bool> Begin(const LeasedText& text);
    [[nodiscard]] boost::asio::awaitable<void> SendOne(Feed& feed, LeasedText text);
    [[nodiscard]] boost::asio::awaitable<void> ReturnLeases(Feed& feed);
    [[nodiscard]] boost::asio::awaitable<void> Watch();
    [[nodiscard]] boost::asio::awaitable<void> Pause(std::chrono::milliseconds time);
    [[nodiscard]] boost::asio::awaitable<void> End(LeasedText text, TextEnd end, std::int64_t retryAfter);
    [[nodiscard]] OutgoingMessage MessageOf(const LeasedText& text) const;
    void Count(Feed& feed, const LeasedText& text, const SendResult& result);

    const Keys& m_keys;
    StoreThread& m_store;
    const Channels& m_channels;
    const SenderOptions m_options;
    const Report m_report;
    SenderFigures m_figures;
    boost::asio::io_context m_context{1};
    bool m_isEnding = false;
    std::vector<std::unique_ptr<Feed>> m_feeds;
    std::thread m_thread;
};

} // namespace beacond
