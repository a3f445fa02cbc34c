// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreThread.h"

#include "server/TemporaryFolder.h"
#include "store/SqliteStore.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <gtest/gtest.h>

#include <atomic>

using namespace beacond;
namespace asio = boost::asio;

namespace {

/// Counts the transactions of the store behind it.
class CountingStore final : public Store
{
public:
    CountingStore(const std::string& path, std::atomic<int>& commits)
        : m_store(path)
        , m_commits(commits)
    {
    }

    void AddStarts(const std::vector<StartCount>& counts) override { m_store.AddStarts(counts); }
    std::vector<StartCount> Starts() const override { return m_store.Starts(); }
    std::int64_t AddStrip(const Strip& strip) override { return m_store.AddStrip(strip); }
    bool RemoveStrip(std::int64_t id) override { return m_store.RemoveStrip(id); }
    std::vector<Strip> Strips() const override { return m_store.Strips(); }
    void AddRelease(const Release& release) override { m_store.AddRelease(release); }
    std::vector<Release> Releases() const override { return m_store.Releases(); }
    SignupResult SignUp(const Signup& signup, const SignupLimits& limits) override
    {
        return m_store.SignUp(signup, limits);
    }
    void Withdraw(std::string_view code) override { m_store.Withdraw(code); }
    Confirmation Confirm(std::string_view code, std::string_view pc) override
    {
        return m_store.Confirm(code, pc);
    }
    void DropOldSignups() override { m_store.DropOldSignups(); }
    bool Forget(std::string_view index) override { return m_store.Forget(index); }
    bool QueueText(std::string_view pc, int prayer, std::string_view time, std::string_view place) override
    {
        return m_store.QueueText(pc, prayer, time, place);
    }
    std::vector<OutboxRow> Outbox(std::size_t most) const override { return m_store.Outbox(most); }
    bool IsWrittenWith(std::string_view name, std::string_view check) override
    {
        return m_store.IsWrittenWith(name, check);
    }
    std::int64_t DataVersion() const override { return m_store.DataVersion(); }
    void Begin() override { m_store.Begin(); }
    void End() override
    {
        if (failsToCommit) {
            throw StoreError("the disk is full");
        }
        ++m_commits;
        m_store.End();
    }
    void Abandon() noexcept override { m_store.Abandon(); }

    bool failsToCommit = false;

private:
    SqliteStore m_store;
    std::atomic<int>& m_commits;
};

class StoreThreadTest : public testing::Test
{
protected:
    template <typename Call>
    void Spawn(Call call)
    {
        asio::co_spawn(context, std::move(call), asio::detached);
    }

    TemporaryFolder folder;
    std::atomic<int> commits = 0;
    std::unique_ptr<CountingStore> store = std::make_unique<CountingStore>(folder.File("store.db"), commits);
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

TEST_F(StoreThreadTest, run_callsThatWaitTogether_shareCommits)
{
    constexpr int kCalls = 1000;
    StoreThread thread(std::move(store));
    int answered = 0;
    for (int i = 0; i < kCalls; ++i) {
        Spawn([&]() -> asio::awaitable<void> {
            co_await thread.Run([](Store& s) { return s.AddStrip({}); });
            ++answered;
        });
    }
    context.run();

    EXPECT_EQ(answered, kCalls);
    EXPECT_LT(commits, kCalls / 2);
}

TEST_F(StoreThreadTest, run_callThatThrows_failsAlone)
{
    StoreThread thread(std::move(store));
    int failed = 0;
    std::size_t strips = 0;
    Spawn([&]() -> asio::awaitable<void> {
        try {
            co_await thread.Run([](Store&) -> int { throw StoreError("out of luck"); });
        } catch (const StoreError&) {
            ++failed;
        }
    });
    Spawn([&]() -> asio::awaitable<void> {
        co_await thread.Run([](Store& s) { return s.AddStrip({}); });
        strips = co_await thread.Run([](Store& s) { return s.Strips().size(); });
    });
    context.run();

    EXPECT_EQ(failed, 1);
    EXPECT_EQ(strips, 1U);
}

TEST_F(StoreThreadTest, run_commitThatFails_failsEveryCallOfTheBatch)
{
    store->failsToCommit = true;
    StoreThread thread(std::move(store));
    int failed = 0;
    for (int i = 0; i < 10; ++i) {
        Spawn([&]() -> asio::awaitable<void> {
            try {
                co_await thread.Run([](Store& s) { return s.AddStrip({}); });
            } catch (const StoreError&) {
                ++failed;
            }
        });
    }
    context.run();

    EXPECT_EQ(failed, 10);
}

TEST_F(StoreThreadTest, destruction_runsTheCallsThatWait)
{
    {
        StoreThread thread(std::move(store));
        for (int i = 0; i < 100; ++i) {
            Spawn([&]() -> asio::awaitable<void> {
                co_await thread.Run([](Store& s) { return s.AddStrip({}); });
            });
        }
        context.poll();
    }
    EXPECT_EQ(SqliteStore(folder.File("store.db")).Strips().size(), 100U);
}
