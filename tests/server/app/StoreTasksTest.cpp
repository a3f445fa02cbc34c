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

#include <ctime>

using namespace beacond;
using namespace std::chrono_literals;

/// The periodic calls with a real store, whose commits a test can let fail.
class StoreTasksTest : public testing::Test
{
protected:
    void Start()
    {
        auto store = std::make_unique<CountingStore>(folder.File("store.db"), commits);
        store->beforeCommit = [this] {
            if (++calls <= failing) {
                throw std::bad_alloc();
            }
        };
        thread.emplace(std::move(store));
        signups.emplace(keys, *thread, channels, SignupOptions(), [](std::string_view) {});
        tasks.emplace(*thread, announcements, starts, *signups);
    }
    /// Runs the spawned tasks until the condition holds; false after 20 seconds.
    template <typename Condition>
    bool RunUntil(Condition condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (!condition() && std::chrono::steady_clock::now() < deadline) {
            context.run_one_for(100ms);
        }
        return condition();
    }

    const TemporaryFolder folder;
    const Keys keys = Keys::FromFolder(folder.File("keys"));
    const Channels channels;
    std::atomic<int> commits = 0;
    std::atomic<int> calls = 0;
    int failing = 0;
    StartCounter starts;
    Latest<Announcements> announcements;
    std::optional<StoreThread> thread;
    std::optional<Signups> signups;
    std::optional<StoreTasks> tasks;
    boost::asio::io_context context;
};

TEST_F(StoreTasksTest, followAnnouncements_anyError_goesOn)
{
    failing = 2;
    Start();
    starts.Add(20'000, "SA", "other");
    boost::asio::co_spawn(context, tasks->StoreStarts(), boost::asio::detached);
    context.run();
    context.restart();
    ASSERT_EQ(thread->State(), StoreState::Failing);
    boost::asio::co_spawn(context, tasks->FollowAnnouncements(), boost::asio::detached);
    EXPECT_TRUE(RunUntil([this] { return calls == 3; }))
        << "of the starts, then of its first and second write";
}

TEST_F(StoreTasksTest, dropSilentDevices_deletesAtTheStart)
{
    constexpr std::int64_t kDay = 24L * 3600;
    {
        std::int64_t now = std::time(nullptr) - 366 * kDay;
        SqliteStore store(folder.File("store.db"), [&now] { return now; });
        const Signup signup{"mail", "sealed", "index", "code", 1800, "form", "words"};
        ASSERT_NE(store.SignUp(signup, {}).device, 0);
        ASSERT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
        // Silent on six of seven days.
        for (now += 359 * kDay; now < std::time(nullptr) - kDay; now += kDay) {
            ASSERT_EQ(store.DropSilentDevices(), 0);
        }
    }
    Start();
    boost::asio::co_spawn(context, tasks->DropSilentDevices(), boost::asio::detached);
    ASSERT_TRUE(RunUntil([this] { return commits == 1; }));
    EXPECT_FALSE(SqliteStore::ToRead(folder.File("store.db")).DataOf("index").device);
}
