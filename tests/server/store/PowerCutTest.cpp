// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/ErrorOf.h"
#include "server/TemporaryFolder.h"
#include "server/store/UnsyncedDisk.h"
#include "store/SqliteStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <optional>

using namespace beacond;
using testing::Contains;
using testing::Field;
using testing::Ge;
using testing::IsEmpty;

namespace {

constexpr std::int64_t kNow = 1'800'000'000;

std::int64_t Now()
{
    return kNow;
}

Signup SignupOf(const std::string& name)
{
    return {"mail", "sealed " + name, "index " + name, "code " + name, 1800, "form", "texts"};
}

// Frequent checkpoints, so that power cuts also happen during them.
int CheckpointSoon(sqlite3* database, const char** /*error*/, const sqlite3_api_routines* /*unused*/)
{
    constexpr int kPages = 8;
    return sqlite3_wal_autocheckpoint(database, kPages);
}

void (*const kCheckpointSoon)() = reinterpret_cast<void (*)()>(&CheckpointSoon);

} // namespace

/// Calls of a store until the power cut, and the guarantees of each call that has returned.
class PowerCut : public testing::Test
{
protected:
    PowerCut() { sqlite3_auto_extension(kCheckpointSoon); }
    ~PowerCut() override { sqlite3_cancel_auto_extension(kCheckpointSoon); }

    using Promise = std::function<void(SqliteStore&)>;

    void SignUpAndQueue(SqliteStore& store, const std::string& name, std::vector<Promise>& made)
    {
        const std::int64_t device = store.SignUp(SignupOf(name), {}).device;
        made.push_back([name](SqliteStore& after) {
            EXPECT_EQ(after.Confirm("code " + name, "pc " + name), Confirmation::Confirmed);
        });
        EXPECT_EQ(store.Confirm("code " + name, "pc " + name), Confirmation::Confirmed);
        made.push_back([name](SqliteStore& after) {
            EXPECT_TRUE(after.QueueText("pc " + name, 6, "20:15", "SA-G1")) << "is confirmed";
        });
        EXPECT_TRUE(store.QueueText("pc " + name, 1, "5:07", "SA-G1"));
        made.push_back([device](SqliteStore& after) {
            EXPECT_THAT(after.Outbox(1000),
                        Contains(AllOf(Field(&OutboxRow::device, device), Field(&OutboxRow::prayer, 1))));
        });
    }
    void CountStart(SqliteStore& store, std::vector<Promise>& made)
    {
        store.AddStarts({{20'000, "SA", "other", 1}});
        made.push_back([count = ++starts](SqliteStore& after) {
            EXPECT_THAT(after.Starts(), Contains(Field(&StartCount::count, Ge(count))));
        });
    }
    void DoAll(SqliteStore& store, const std::string& name, std::vector<Promise>& made)
    {
        SignUpAndQueue(store, name, made);
        CountStart(store, made);
    }
    /// A short life of a store: creation, single writes, grouped writes, close, reopening.
    void Live(const std::string& path)
    {
        starts = 0;
        {
            SqliteStore store(path, &Now);
            DoAll(store, "first", promises);
            DoAll(store, "second", promises);
            std::vector<Promise> together;
            store.Begin();
            for (const char* const name : {"third", "fourth", "fifth"}) {
                DoAll(store, name, together);
            }
            store.End();
            promises.insert(promises.end(), together.begin(), together.end());
        }
        SqliteStore store(path, &Now);
        DoAll(store, "sixth", promises);
    }
    /// False after the cut.
    bool LiveUntilCut(const std::string& path)
    {
        try {
            Live(path);
        } catch (const StoreError&) {
        }
        return !disk->IsCut();
    }
    void ExpectPromisesKept(const std::string& path)
    {
        SqliteStore store(path, &Now);
        Database database(path);
        Statement check = database.Run("PRAGMA integrity_check");
        ASSERT_TRUE(check.Step());
        EXPECT_EQ(check.Text(0), "ok");
        // Check in reverse order: the check of a sign-up binds the installation again.
        for (auto promise = promises.rbegin(); promise != promises.rend(); ++promise) {
            (*promise)(store);
        }
    }
    /// Runs one life of a store for each change of the disk, with a power cut after that change.
    void CutEverywhere(const std::function<void()>& restart)
    {
        bool hasEnded = false;
        std::size_t changes = 0;
        for (; !hasEnded && !HasFailure(); ++changes) {
            SCOPED_TRACE("cut after change " + std::to_string(changes));
            const TemporaryFolder folder;
            promises.clear();
            disk.emplace();
            disk->CutAfter(changes);
            hasEnded = LiveUntilCut(folder.File("store.db"));
            restart();
            ASSERT_NO_THROW(ExpectPromisesKept(folder.File("store.db")));
        }
        std::cout << changes << " cuts\n";
    }

    std::optional<UnsyncedDisk> disk{std::in_place};
    std::vector<Promise> promises;
    std::int64_t starts = 0;
};

TEST_F(PowerCut, anyInstant_unsyncedChangesLost_keepsWhatWasAnswered)
{
    CutEverywhere([this] { disk->Restart(); });
}

TEST_F(PowerCut, anyInstant_someUnsyncedChangesKept_keepsWhatWasAnswered)
{
    for (const unsigned seed : {1U, 2U, 3U}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        CutEverywhere([this, seed] { disk->Restart(seed); });
    }
}

TEST_F(PowerCut, databaseThatDoesNotSync_losesItsRow)
{
    const TemporaryFolder folder;
    {
        Database database(folder.File("a.db"));
        database.Execute("PRAGMA journal_mode = WAL; CREATE TABLE a (b); PRAGMA synchronous = OFF");
        database.Execute("INSERT INTO a VALUES (1)");
        disk->CutAfter(0);
    }
    disk->Restart();
    Database database(folder.File("a.db"));
    EXPECT_FALSE(database.Run("SELECT b FROM a").Step());
}

TEST_F(PowerCut, fullDisk_failsTheCallAndLosesNothing)
{
    const TemporaryFolder folder;
    SqliteStore store(folder.File("store.db"), &Now);
    DoAll(store, "first", promises);
    disk->FillAfter(0);
    EXPECT_EQ(ErrorOf<StoreError>([&] { return store.SignUp(SignupOf("second"), {}); }),
              folder.File("store.db") + ": database or disk is full");
    EXPECT_THROW(store.TryToWrite(), StoreError);
    disk->MakeRoom();
    EXPECT_NO_THROW(store.TryToWrite());
    DoAll(store, "second", promises);
    ExpectPromisesKept(folder.File("store.db"));
}

TEST_F(PowerCut, fullDiskWithinAGroup_storesNothingOfTheGroup)
{
    const TemporaryFolder folder;
    SqliteStore store(folder.File("store.db"), &Now);
    // More than the cache holds, so that the disk is full in the middle of the group.
    const Strip large{0, std::string(16'384, 'x'), "", "", "", ""};
    disk->FillAfter(100);
    store.Begin();
    bool hasFailed = false;
    for (int i = 0; i < 300 && !hasFailed; ++i) {
        try {
            store.AddStrip(large);
        } catch (const StoreError&) {
            hasFailed = true;
        }
    }
    disk->MakeRoom();
    EXPECT_TRUE(hasFailed);
    EXPECT_THROW(store.AddStrip({}), StoreError);
    EXPECT_THROW(store.End(), StoreError);
    store.Abandon();
    EXPECT_THAT(store.Strips(), IsEmpty());
}
