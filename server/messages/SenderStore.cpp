// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The calls of the sender to the store.
#include "messages/SenderFeed.h"
#include "store/StoreThread.h"

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

constexpr auto kWatchInterval = 1s;

} // namespace

// The calls of the store are named variables before they are awaited: see docs/service.md.

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

// Repeats the call until it succeeds: otherwise a text that was sent would be sent again.
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
            m_figures.uncertainNow = static_cast<std::uint64_t>(state.uncertain);
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
