// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Sender.h"

#include "messages/TextWording.h"
#include "secrets/Keys.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/use_future.hpp>

#include <algorithm>
#include <cmath>
#include <deque>
#include <future>
#include <limits>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

constexpr auto kPoll = 250ms;
constexpr auto kWatchInterval = 1s;
constexpr double kSecondsOfABatch = 5;
constexpr double kTextsOfAConnection = 25;
// For the texts of a batch that wait for a connection.
constexpr auto kQueueTime = 5s;
// Between the end of an attempt and the end of its lease: the time to store the result.
constexpr auto kReserve = 5s;

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

/// A channel with the texts that are leased for it.
struct Sender::Feed
{
    Feed(Channel& used, asio::io_context& context)
        : channel(used)
        , threads(static_cast<std::size_t>(used.Connections()))
        , changed(context, Clock::time_point::max())
        , room(context)
    {
    }

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
    asio::thread_pool threads;
    std::deque<Leased> leased;
    asio::steady_timer changed; ///< cancelled when there are new leases
    asio::steady_timer room;    ///< cancelled when there is room for further leases
    ChannelFigures figures;
};

// The calls of the store are named variables before they are awaited: see docs/service.md.

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

asio::awaitable<bool> Sender::Lease(Feed& feed)
{
    auto isWaiting = [kind = feed.channel.Kind()](const Store& store) { return store.IsTextWaiting(kind); };
    const LeaseTerms terms{feed.channel.Kind(), feed.Batch(), feed.LeaseTime().count(), feed.channel.Price(),
                           m_options.spendPerDay};
    auto lease = [terms](Store& store) { return store.LeaseTexts(terms); };
    try {
        const Clock::time_point begin = Clock::now();
        const bool isAnyWaiting = co_await m_store.Run(std::move(isWaiting));
        if (!isAnyWaiting) {
            if (feed.channel.Price() > 0) {
                m_figures.isSpendReached = 0;
            }
            co_return false;
        }
        const beacond::Lease leased = co_await m_store.Run(std::move(lease));
        for (const LeasedText& text : leased.texts) {
            feed.leased.push_back({text, begin + feed.LeaseTime()});
        }
        m_figures.capped += static_cast<std::uint64_t>(leased.dropped);
        if (feed.channel.Price() > 0) {
            m_figures.isSpendReached = leased.isSpendReached ? 1 : 0;
        }
        if (leased.isSpendReached) {
            m_report("texts wait: the spending of a day is reached");
        }
        feed.changed.cancel();
        co_return !leased.texts.empty();
    } catch (const std::exception& error) {
        m_report(error.what());
        co_return false;
    }
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
        const Clock::time_point slot = feed.channel.TakeSlot();
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(slot - Clock::now());
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

asio::awaitable<bool> Sender::Begin(const LeasedText& text)
{
    auto begin = [id = text.text.id, fence = text.fence](Store& store) {
        return store.BeginSending(id, fence);
    };
    try {
        const bool isBegun = co_await m_store.Run(std::move(begin));
        co_return isBegun;
    } catch (const std::exception& error) {
        // The call may still be stored: then the text counts as begun, and its lease expires.
        m_report(error.what());
    }
    co_await Pause(1s);
    co_return false;
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
    const bool isFailure = result.handover == Handover::RetryLater || result.handover == Handover::Unknown;
    feed.figures.failuresInARow = isFailure ? feed.figures.failuresInARow + 1 : 0;
    if (!result.reason.empty()) {
        m_report("channel " + feed.channel.Name() + ": " + result.reason);
    }
}

// Repeats the call until the store takes it: otherwise a text that was sent would be sent again.
asio::awaitable<void> Sender::End(LeasedText text, TextEnd end, std::int64_t retryAfter)
{
    constexpr int kMostTries = 5;
    for (int tries = 0; tries < kMostTries; ++tries) {
        auto record = [id = text.text.id, fence = text.fence, end, retryAfter](Store& store) {
            return store.EndSending(id, fence, end, retryAfter);
        };
        try {
            co_await m_store.Run(std::move(record));
            co_return;
        } catch (const std::exception& error) {
            m_report(error.what());
        }
        if (m_isEnding) {
            co_return;
        }
        co_await Pause(500ms);
    }
}

asio::awaitable<void> Sender::ReturnLeases(Feed& feed)
{
    std::deque<Feed::Leased> unused;
    unused.swap(feed.leased);
    if (unused.empty()) {
        co_return;
    }
    auto giveBack = [unused = std::move(unused)](Store& store) {
        for (const Feed::Leased& leased : unused) {
            store.EndSending(leased.text.text.id, leased.text.fence, TextEnd::NotTried, 0);
        }
        return true;
    };
    try {
        co_await m_store.Run(std::move(giveBack));
    } catch (const std::exception& error) {
        m_report(error.what());
    }
}

asio::awaitable<void> Sender::Watch()
{
    while (!m_isEnding) {
        auto measure = [](const Store& store) { return store.StateOfOutbox(); };
        auto drop = [](Store& store) { return store.DropOldTexts(); };
        try {
            const OutboxState state = co_await m_store.Run(std::move(measure));
            m_figures.waiting = static_cast<std::uint64_t>(state.waiting);
            m_figures.leased = static_cast<std::uint64_t>(state.leased);
            m_figures.oldestSeconds = static_cast<std::uint64_t>(state.oldestAge);
            m_figures.spentToday = static_cast<std::uint64_t>(state.spentToday);
            if (state.waiting + state.leased > 0) {
                const std::int64_t dropped = co_await m_store.Run(std::move(drop));
                m_figures.givenUp += static_cast<std::uint64_t>(dropped);
                if (dropped > 0) {
                    m_report(std::to_string(dropped) + " texts are given up: not sent within ten minutes");
                }
            }
        } catch (const std::exception& error) {
            m_report(error.what());
        }
        co_await Pause(kWatchInterval);
    }
}

} // namespace beacond
