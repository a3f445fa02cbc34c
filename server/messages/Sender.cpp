// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Sender.h"

#include "messages/SenderFeed.h"
#include "messages/TextWording.h"
#include "secrets/Keys.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>
#include <future>
#include <optional>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

constexpr auto kPoll = 250ms;
constexpr auto kSlotPoll = 20ms;

// Seconds until the next attempt: 5, 10, 20, ... 160, within the ten minutes of a text.
std::int64_t BackOff(std::int64_t attempts)
{
    constexpr std::int64_t kMostDoublings = 5;
    return std::int64_t{5} << std::min(attempts, kMostDoublings);
}

TextEnd EndOf(Handover handover)
{
    switch (handover) {
    case Handover::Accepted:
        return TextEnd::Sent;
    case Handover::Refused:
        return TextEnd::Refused;
    case Handover::Unknown:
        return TextEnd::Unknown;
    case Handover::RetryLater:
        break;
    }
    return TextEnd::RetryLater;
}

} // namespace

Sender::Sender(const Keys& keys, StoreThread& store, const Channels& channels, SenderOptions options,
               Report report)
    : m_keys(keys)
    , m_store(store)
    , m_channels(channels)
    , m_options(std::move(options))
    , m_report(std::move(report))
{
    for (const std::unique_ptr<Channel>& channel : channels.All()) {
        m_feeds.push_back(std::make_unique<Feed>(*channel, m_context));
    }
}

// NOLINTNEXTLINE(bugprone-exception-escape): a thread that can't be joined ends the program
Sender::~Sender()
{
    Stop(Clock::now());
}

const ChannelFigures& Sender::FiguresOf(std::size_t channel) const
{
    return m_feeds[channel]->figures;
}

void Sender::Start()
{
    for (const std::unique_ptr<Feed>& feed : m_feeds) {
        asio::co_spawn(m_context, Fill(*feed), asio::detached);
        for (int connection = 0; connection < feed->channel.Connections(); ++connection) {
            asio::co_spawn(m_context, Work(*feed), asio::detached);
        }
    }
    asio::co_spawn(m_context, Watch(), asio::detached);
    m_thread = std::thread([this] { m_context.run(); });
}

void Sender::BeginStop()
{
    asio::post(m_context, [this] {
        m_isEnding = true;
        for (const std::unique_ptr<Feed>& feed : m_feeds) {
            feed->changed.cancel();
            feed->room.cancel();
        }
    });
}

void Sender::Stop(Clock::time_point deadline)
{
    if (!m_thread.joinable()) {
        return;
    }
    BeginStop();
    // The context ends when its last coroutine has ended.
    std::promise<void> ended;
    std::future<void> isEnded = ended.get_future();
    std::thread joiner([this, &ended] {
        m_thread.join();
        ended.set_value();
    });
    if (isEnded.wait_until(deadline) != std::future_status::ready) {
        m_channels.Abort();
    }
    joiner.join();
}

asio::awaitable<void> Sender::Pause(std::chrono::milliseconds time)
{
    // The end of the sender ends each pause.
    asio::steady_timer timer(m_context, time);
    const auto until = Clock::now() + time;
    while (!m_isEnding && Clock::now() < until) {
        timer.expires_after(std::min<Clock::duration>(until - Clock::now(), 100ms));
        boost::system::error_code ignored;
        co_await timer.async_wait(asio::redirect_error(asio::use_awaitable, ignored));
    }
}

asio::awaitable<void> Sender::Fill(Feed& feed)
{
    while (!m_isEnding) {
        bool hasLeased = false;
        if (feed.HasRoom()) {
            hasLeased = co_await Lease(feed);
        }
        if (!hasLeased && !m_isEnding) {
            feed.room.expires_after(kPoll);
            boost::system::error_code ignored;
            co_await feed.room.async_wait(asio::redirect_error(asio::use_awaitable, ignored));
        }
    }
    co_await ReturnLeases(feed);
}

asio::awaitable<void> Sender::Work(Feed& feed)
{
    while (!m_isEnding) {
        if (feed.leased.empty()) {
            boost::system::error_code ignored;
            co_await feed.changed.async_wait(asio::redirect_error(asio::use_awaitable, ignored));
            continue;
        }
        const Feed::Leased next = feed.leased.front();
        feed.leased.pop_front();
        if (feed.leased.size() == feed.Batch() / 2) {
            feed.room.cancel();
        }
        std::optional<Clock::time_point> slot = feed.channel.TakeSlot(Channel::Use::Text);
        while (!slot && !m_isEnding) {
            co_await Pause(kSlotPoll);
            slot = feed.channel.TakeSlot(Channel::Use::Text);
        }
        const auto wait = slot ? std::chrono::ceil<std::chrono::milliseconds>(*slot - Clock::now()) : 0ms;
        if (wait > 0ms) {
            co_await Pause(wait);
        }
        // Without enough time for an attempt the text is leased again.
        if (m_isEnding) {
            feed.leased.push_front(next);
        } else if (next.expiry > Clock::now() + feed.channel.Timeout() + kReserve) {
            co_await SendOne(feed, next.text);
        } else {
            co_await End(next.text, TextEnd::NotTried, 0);
        }
    }
    // After the last send of this connection; leases are returned once.
    co_await ReturnLeases(feed);
}

asio::awaitable<void> Sender::SendOne(Feed& feed, LeasedText text)
{
    const bool isBegun = co_await Begin(text);
    if (!isBegun) {
        co_return;
    }
    SendResult result;
    try {
        const OutgoingMessage message = MessageOf(text);
        auto send = [&feed, &message]() -> asio::awaitable<SendResult> {
            co_return feed.channel.Send(message);
        };
        result = co_await asio::co_spawn(feed.threads, send, asio::use_awaitable);
    } catch (const KeyError& error) {
        result = {Handover::Refused, error.what()};
    } catch (const std::exception& error) {
        result = {Handover::RetryLater, error.what()};
    }
    Count(feed, text, result);
    const std::int64_t retryAfter = BackOff(text.attempts);
    co_await End(std::move(text), EndOf(result.handover), retryAfter);
}

OutgoingMessage Sender::MessageOf(const LeasedText& text) const
{
    constexpr std::size_t kHashBytes = 12;
    std::string id = "text-";
    const std::string hash =
        m_keys.index.Hash("message id", std::to_string(text.text.id) + ' ' + std::to_string(text.queuedAt));
    for (const char byte : hash.substr(0, kHashBytes)) {
        constexpr std::string_view kDigits = "0123456789abcdef";
        const auto value = static_cast<unsigned char>(byte);
        id += {kDigits[value >> 4U], kDigits[value & 15U]};
    }
    const std::string wording = PrayerText(m_options.language, text.text.prayer, text.text.time);
    return {m_keys.address.Unseal(text.sealedAddress), wording, wording, id, m_options.language};
}

void Sender::Count(Feed& feed, const LeasedText& text, const SendResult& result)
{
    m_figures.retried += text.attempts > 0 ? 1U : 0U;
    m_figures.doubled += text.mayBeSent ? 1U : 0U;
    m_figures.uncertain += result.handover == Handover::Unknown ? 1U : 0U;
    if (result.handover == Handover::Accepted) {
        ++m_figures.sent;
        ++feed.figures.accepted;
    } else if (result.handover == Handover::Refused) {
        ++m_figures.refused;
        ++feed.figures.refused;
    } else {
        ++feed.figures.failed;
    }
    feed.figures.failuresInARow = static_cast<std::uint64_t>(feed.channel.FailuresInARow());
    if (!result.reason.empty()) {
        m_report("channel " + feed.channel.Name() + ": " + result.reason);
    }
}

} // namespace beacond
