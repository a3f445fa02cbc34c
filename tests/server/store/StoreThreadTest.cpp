// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreThread.h"

#include "server/Becomes.h"
#include "server/TemporaryFolder.h"
#include "server/store/CountingStore.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>

using namespace beacond;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
namespace asio = boost::asio;

namespace {

constexpr auto kShort = 100ms;

class StoreThreadTest : public testing::Test
{
protected:
    /// Adds a strip with that text; counts the answers and the failures.
    void SpawnAdd(StoreThread& thread, const std::string& html) { SpawnAdd(context, thread, html); }
    void SpawnAdd(asio::io_context& caller, StoreThread& thread, const std::string& html)
    {
        auto add = [this, &thread, html]() -> asio::awaitable<void> {
            auto call = [html](Store& s) { return s.AddStrip({0, html, "", "", "", ""}); };
            try {
                co_await thread.Run(call);
                ++answers;
            } catch (const StoreError&) {
                ++failures;
            }
        };
        asio::co_spawn(caller, std::move(add), asio::detached);
    }
    std::vector<std::string> Stored()
    {
        std::vector<std::string> texts;
        for (const Strip& strip : SqliteStore(folder.File("store.db")).Strips()) {
            texts.push_back(strip.html);
        }
        return texts;
    }
    /// Commits block until Release.
    void HoldCommits()
    {
        store->beforeCommit = [this] {
            isCommitting.count_down();
            released.wait();
        };
    }
    void Release() { released.count_down(); }
    void RunAgain()
    {
        context.restart();
        context.run();
    }
    template <typename Call>
    void Spawn(Call call)
    {
        asio::co_spawn(context, std::move(call), asio::detached);
    }

    TemporaryFolder folder;
    std::atomic<int> commits = 0;
    std::unique_ptr<CountingStore> store = std::make_unique<CountingStore>(folder.File("store.db"), commits);
    std::latch isCommitting{1};
    std::latch released{1};
    int answers = 0;
    int failures = 0;
    asio::io_context context;
};

} // namespace

TEST_F(StoreThreadTest, run_answersTheResultOnTheCallersThread)
{
    StoreThread thread(std::move(store));
    std::thread::id resumed;
    std::int64_t id = 0;
    Spawn([&]() -> asio::awaitable<void> {
        id = co_await thread.Run([](Store& s) { return s.AddStrip({}); });
        resumed = std::this_thread::get_id();
    });
    context.run();

    EXPECT_EQ(id, 1);
    EXPECT_EQ(resumed, std::this_thread::get_id());
}

TEST_F(StoreThreadTest, run_queuedCalls_shareCommits)
{
    constexpr int kCalls = 1000;
    StoreThread thread(std::move(store));
    for (int i = 0; i < kCalls; ++i) {
        SpawnAdd(thread, "");
    }
    context.run();

    EXPECT_EQ(answers, kCalls);
    EXPECT_LT(commits, kCalls / 2);
}

TEST_F(StoreThreadTest, run_throwingCall_failsAlone)
{
    StoreThread thread(std::move(store));
    Spawn([&]() -> asio::awaitable<void> {
        try {
            co_await thread.Run([](Store&) -> int { throw StoreError("the call fails"); });
        } catch (const StoreError&) {
            ++failures;
        }
    });
    SpawnAdd(thread, "other");
    context.run();

    EXPECT_EQ(failures, 1);
    EXPECT_THAT(Stored(), ElementsAre("other"));
}

TEST_F(StoreThreadTest, run_failingCommit_failsEveryCallOfTheBatch)
{
    std::atomic<bool> isFull = true;
    store->beforeCommit = [&isFull] {
        if (isFull) {
            throw StoreError("the disk is full");
        }
    };
    StoreThread thread(std::move(store));
    for (int i = 0; i < 10; ++i) {
        SpawnAdd(thread, "");
    }
    context.run();
    EXPECT_EQ(failures, 10);

    isFull = false;
    SpawnAdd(thread, "after");
    RunAgain();
    EXPECT_THAT(Stored(), ElementsAre("after"));
}

TEST_F(StoreThreadTest, destruction_runsTheQueuedCalls)
{
    {
        StoreThread thread(std::move(store));
        for (int i = 0; i < 100; ++i) {
            SpawnAdd(thread, "");
        }
        context.poll();
    }
    EXPECT_EQ(Stored().size(), 100U);
}

TEST_F(StoreThreadTest, run_hangingDisk_failsAtTheLimitAndDropsCallsThatHaveNotBegun)
{
    HoldCommits();
    {
        StoreThread thread(std::move(store), kShort);
        SpawnAdd(thread, "begun");
        context.run();
        isCommitting.wait();
        EXPECT_EQ(failures, 1);
        EXPECT_TRUE(Becomes([&thread] { return thread.State() == StoreState::Stuck; }));
        SpawnAdd(thread, "not begun");
        RunAgain();
        EXPECT_EQ(failures, 2);
        Release();
    }
    EXPECT_THAT(Stored(), ElementsAre("begun"));
}

TEST_F(StoreThreadTest, run_callerDestroyedWhileItWaits_isNeitherAnsweredNorBegun)
{
    HoldCommits();
    {
        StoreThread thread(std::move(store), kShort);
        SpawnAdd(thread, "begun");
        context.poll();
        isCommitting.wait();
        {
            asio::io_context brief;
            SpawnAdd(brief, thread, "not begun");
            brief.poll();
        }
        Release();
    }
    EXPECT_THAT(Stored(), ElementsAre("begun"));
}

TEST_F(StoreThreadTest, lockHeldByAnotherProcess_failsWritesNotReads)
{
    StoreThread thread(std::move(store));
    Database other(folder.File("store.db"));
    other.Execute("BEGIN IMMEDIATE");
    std::size_t strips = 1;
    Spawn([&]() -> asio::awaitable<void> {
        strips = co_await thread.Run([](const Store& s) { return s.Strips().size(); });
    });
    context.run();
    EXPECT_EQ(strips, 0U);
    EXPECT_EQ(thread.State(), StoreState::Working);

    SpawnAdd(thread, "during");
    context.restart();
    const auto begin = std::chrono::steady_clock::now();
    context.run();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, StoreThread::kLongestCall);
    EXPECT_EQ(failures, 1);
    Spawn([&]() -> asio::awaitable<void> {
        co_await thread.Run([](const Store& s) { return s.Strips().size(); });
    });
    RunAgain();
    EXPECT_EQ(thread.State(), StoreState::Failing) << "a read says nothing about writes";

    other.Execute("ROLLBACK");
    SpawnAdd(thread, "after");
    RunAgain();
    EXPECT_EQ(thread.State(), StoreState::Working);
    EXPECT_THAT(Stored(), ElementsAre("after"));
}

TEST_F(StoreThreadTest, destruction_lockHeldByAnotherProcess_endsAtTheLimitOfTheCalls)
{
    Database other(folder.File("store.db"));
    other.Execute("BEGIN IMMEDIATE");
    const auto begin = std::chrono::steady_clock::now();
    {
        StoreThread thread(std::move(store), kShort);
        // More than one batch, so that each batch would wait for the lock.
        for (int i = 0; i < 2000; ++i) {
            SpawnAdd(thread, "during");
        }
        context.poll();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    other.Execute("ROLLBACK");
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(StoreThreadTest, run_writeQueuedAfterManyReads_isNotTheLast)
{
    constexpr int kReads = 2000;
    StoreThread thread(std::move(store));
    std::latch isHeld{1};
    std::latch isReleased{1};
    const auto hold = [&](const Store&) {
        isHeld.count_down();
        isReleased.wait();
        return true;
    };
    std::atomic<int> reads = 0;
    const auto read = [&reads](const Store&) { return ++reads; };
    const auto write = [&reads](Store&) { return reads.load(); };
    Spawn([&]() -> asio::awaitable<void> { co_await thread.Run(hold); });
    context.poll();
    isHeld.wait();
    for (int i = 0; i < kReads; ++i) {
        Spawn([&]() -> asio::awaitable<void> { co_await thread.Run(read); });
    }
    int readsBeforeTheWrite = kReads;
    Spawn([&]() -> asio::awaitable<void> { readsBeforeTheWrite = co_await thread.Run(write); });
    context.poll();
    isReleased.count_down();
    context.run();

    EXPECT_LE(readsBeforeTheWrite, kReads / 4);
    EXPECT_EQ(reads, kReads);
}

TEST(StoreCall, end_callerThatCantBeWoken_getsTheResultAtItsTimeLimit)
{
    StoreCallOf call([](Store&) { return true; });
    call.Prepare(StoreCall::Clock::now() + 1h, [] { throw std::bad_alloc(); });

    EXPECT_NO_THROW(call.End(nullptr));
    EXPECT_NO_THROW(call.RequireEnd());
}
