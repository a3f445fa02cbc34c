// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StoreTasks.h"

#include "messages/Channels.h"
#include "messages/Signups.h"
#include "protocol/StartCounter.h"
#include "secrets/Keys.h"
#include "server/TemporaryFolder.h"
#include "server/store/CountingStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <gtest/gtest.h>

using namespace beacond;
using namespace std::chrono_literals;

TEST(StoreTasks, followAnnouncements_anyError_goesOn)
{
    const TemporaryFolder folder;
    std::atomic<int> commits = 0;
    auto store = std::make_unique<CountingStore>(folder.File("store.db"), commits);
    std::atomic<int> failures = 0;
    store->beforeCommit = [&failures] {
        if (++failures <= 2) {
            throw std::bad_alloc();
        }
    };
    const Keys keys = Keys::FromFolder(folder.File("keys"));
    StoreThread thread(std::move(store));
    const Channels channels;
    Signups signups(keys, thread, channels, {}, [](std::string_view) {});
    StartCounter starts;
    Latest<Announcements> announcements;
    StoreTasks tasks(thread, announcements, starts, signups);
    boost::asio::io_context context;
    starts.Add(20'000, "SA", "other");
    boost::asio::co_spawn(context, tasks.StoreStarts(), boost::asio::detached);
    context.run();
    context.restart();
    ASSERT_EQ(thread.State(), StoreState::Failing);
    boost::asio::co_spawn(context, tasks.FollowAnnouncements(), boost::asio::detached);
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (failures < 3 && std::chrono::steady_clock::now() < deadline) {
        context.run_one_for(100ms);
    }
    EXPECT_EQ(failures, 3) << "of the starts, then of its first and second write";
}
