// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/FileSizeLimit.h"
#include "server/TemporaryFolder.h"
#include "store/SqliteStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <iostream>
#include <optional>

using namespace beacond;
using testing::Contains;
using testing::Field;
using testing::Ge;
using testing::IsEmpty;

namespace {

std::int64_t Now()
{
    return 1'800'000'000;
}

Signup SignupOf(const std::string& name)
{
    return {"mail", "sealed " + name, "index " + name, "code " + name, 1800, "form", "texts"};
}

std::optional<int> pausesLeft; // until every statement fails; none for a store that works
sqlite3* latest = nullptr;

int IsInterrupted(void* /*unused*/)
{
    return pausesLeft && --*pausesLeft < 0 ? 1 : 0;
}

// Called for each new connection.
int Watch(sqlite3* database, const char** /*error*/, const sqlite3_api_routines* /*unused*/)
{
    latest = database;
    constexpr int kInstructionsBetweenPauses = 25;
    sqlite3_progress_handler(database, kInstructionsBetweenPauses, &IsInterrupted, nullptr);
    // Frequent checkpoints, so that some lie between the calls.
    constexpr int kPages = 8;
    return sqlite3_wal_autocheckpoint(database, kPages);
}

void (*const kWatch)() = reinterpret_cast<void (*)()>(&Watch);

} // namespace

/// Calls of a store until it fails, and the guarantees of each call that has returned.
class InterruptedStore : public testing::Test
{
protected:
    InterruptedStore() { sqlite3_auto_extension(kWatch); }
    ~InterruptedStore() override { sqlite3_cancel_auto_extension(kWatch); }

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

    std::vector<Promise> promises;
    std::int64_t starts = 0;
};

TEST_F(InterruptedStore, anyInstant_keepsWhatWasAnswered)
{
    int instants = 0;
    for (bool isInterrupted = true; isInterrupted && !HasFailure(); ++instants) {
        SCOPED_TRACE("interrupted at pause " + std::to_string(instants));
        const TemporaryFolder folder;
        promises.clear();
        pausesLeft = instants;
        try {
            Live(folder.File("store.db"));
            isInterrupted = false;
        } catch (const StoreError&) { // from here on the store does nothing more
        }
        pausesLeft.reset();
        ASSERT_NO_THROW(ExpectPromisesKept(folder.File("store.db")));
    }
    std::cout << instants << " instants\n";
    EXPECT_GT(instants, 100);
}

// With it SQLite keeps each commit in a power cut.
TEST_F(InterruptedStore, commit_waitsForTheDisk)
{
    const TemporaryFolder folder;
    const SqliteStore store(folder.File("store.db"), &Now);
    int level = 0;
    const auto take = [](void* to, int, char** values, char**) {
        *static_cast<int*>(to) = std::stoi(values[0]);
        return 0;
    };
    ASSERT_EQ(sqlite3_exec(latest, "PRAGMA synchronous", take, &level, nullptr), SQLITE_OK);
    constexpr int kFull = 2;
    EXPECT_EQ(level, kFull);
}

TEST_F(InterruptedStore, fullDisk_failsTheCallAndLosesNothing)
{
    const TemporaryFolder folder;
    SqliteStore store(folder.File("store.db"), &Now);
    DoAll(store, "first", promises);
    {
        const FileSizeLimit fullDisk(1);
        try {
            (void)store.SignUp(SignupOf("second"), {});
            FAIL() << "no error";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.what(), folder.File("store.db") + ": disk I/O error");
        }
        EXPECT_THROW(store.TryToWrite(), StoreError);
    }
    EXPECT_NO_THROW(store.TryToWrite());
    DoAll(store, "second", promises);
    ExpectPromisesKept(folder.File("store.db"));
}

TEST_F(InterruptedStore, fullDiskWithinAGroup_storesNothingOfTheGroup)
{
    const TemporaryFolder folder;
    SqliteStore store(folder.File("store.db"), &Now);
    // More than the cache holds, so that the disk is full in the middle of the group.
    const Strip large{0, std::string(16'384, 'x'), "", "", "", ""};
    store.Begin();
    {
        const FileSizeLimit fullDisk(400'000);
        const auto addMany = [&] {
            for (int i = 0; i < 300; ++i) {
                store.AddStrip(large);
            }
        };
        EXPECT_THROW(addMany(), StoreError);
    }
    EXPECT_THROW(store.AddStrip({}), StoreError);
    EXPECT_THROW(store.End(), StoreError);
    store.Abandon();
    EXPECT_THAT(store.Strips(), IsEmpty());
}
