// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StoreTasks.h"

#include "app/Log.h"
#include "messages/Signups.h"
#include "protocol/StartCounter.h"
#include "store/StoreThread.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace beacond {

namespace {

namespace asio = boost::asio;
using namespace std::chrono_literals;

// The longest delay until a strip added by a subcommand is shown.
constexpr auto kAnnouncementsAge = 2s;
constexpr auto kTidyInterval = 60s;
constexpr auto kSilenceInterval = 1h;

} // namespace

std::shared_ptr<const Announcements> ReadAnnouncements(const Store& store)
{
    return std::make_shared<const Announcements>(Announcements{store.Strips(), store.Releases()});
}

StoreTasks::StoreTasks(StoreThread& store, Latest<Announcements>& announcements, StartCounter& starts,
                       Signups& signups)
    : m_store(store)
    , m_announcements(announcements)
    , m_starts(starts)
    , m_signups(signups)
{
}

asio::awaitable<void> StoreTasks::FollowAnnouncements()
{
    asio::steady_timer timer(co_await asio::this_coro::executor);
    std::int64_t known = 0;
    for (;;) {
        try {
            auto load = [this, known](const Store& store) {
                const std::int64_t version = store.DataVersion();
                if (version != known) {
                    m_announcements.Set(ReadAnnouncements(store));
                }
                return version;
            };
            // Reads may succeed while writes fail: only a write proves that the store works again.
            auto writeAndLoad = [load](Store& store) {
                store.TryToWrite();
                return load(store);
            };
            if (m_store.State() == StoreState::Working) {
                known = co_await m_store.Run(load);
            } else {
                known = co_await m_store.Run(writeAndLoad);
            }
        } catch (const std::exception& error) {
            LogError(error.what());
        }
        timer.expires_after(kAnnouncementsAge);
        co_await timer.async_wait(asio::use_awaitable);
    }
}

asio::awaitable<void> StoreTasks::TidyEveryMinute()
{
    asio::steady_timer timer(co_await asio::this_coro::executor);
    for (;;) {
        timer.expires_after(kTidyInterval);
        co_await timer.async_wait(asio::use_awaitable);
        try {
            co_await StoreStarts();
            co_await m_signups.DropOld();
        } catch (const std::exception& error) {
            LogError(error.what());
        }
    }
}

asio::awaitable<void> StoreTasks::DropSilentDevices()
{
    asio::steady_timer timer(co_await asio::this_coro::executor);
    for (;;) {
        try {
            auto drop = [](Store& store) { return store.DropSilentDevices(); };
            const std::int64_t count = co_await m_store.Run(drop);
            if (count > 0) {
                LogInfo("devices deleted after a year of silence: " + std::to_string(count));
            }
        } catch (const std::exception& error) {
            LogError(error.what());
        }
        timer.expires_after(kSilenceInterval);
        co_await timer.async_wait(asio::use_awaitable);
    }
}

asio::awaitable<void> StoreTasks::StoreStarts()
{
    const std::vector<StartCount> counts = m_starts.Drain();
    if (counts.empty()) {
        co_return;
    }
    try {
        auto add = [counts](Store& store) {
            store.AddStarts(counts);
            return true;
        };
        co_await m_store.Run(add);
    } catch (const std::exception& error) {
        LogError(error.what());
        // Counts that are stored after the time limit of the call are counted twice; only a statistic
        // suffers.
        for (const StartCount& count : counts) {
            m_starts.Add(count.day, count.country, count.dist, count.count);
        }
    }
}

} // namespace beacond
