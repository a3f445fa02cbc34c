// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SqliteStore.h"

#include "server/TemporaryFolder.h"
#include "store/Migrations.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using namespace beacond;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::string ErrorOfOpening(const std::string& path)
{
    try {
        const SqliteStore store(path);
    } catch (const StoreError& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(SqliteStore, open_again_findsWhatWasStored)
{
    const TemporaryFolder folder;
    SqliteStore(folder.File("store.db")).AddRelease({"1", "6", "https://example.org/"});

    EXPECT_EQ(SqliteStore(folder.File("store.db")).Releases().size(), 1U);
}

TEST(SqliteStore, open_fileOfANewerVersion_isRefusedWithItsPath)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    Database(path).Execute("PRAGMA user_version = " + std::to_string(kSqliteMigrations.size() + 1));

    EXPECT_THAT(ErrorOfOpening(path), StartsWith(path + ": written by a newer version of the service"));
}

TEST(SqliteStore, open_fileThatIsNoStore_isRefusedAndKept)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    std::ofstream(path) << std::string(4096, 'x');

    EXPECT_THAT(ErrorOfOpening(path), StartsWith(path + ": "));
    std::ifstream file(path);
    EXPECT_EQ(file.get(), 'x');
}

TEST(SqliteStore, open_folderThatIsMissing_isRefusedWithThePath)
{
    EXPECT_THAT(ErrorOfOpening("/nonexistent/store.db"), HasSubstr("/nonexistent/store.db"));
}

TEST(SqliteStore, open_logsAhead)
{
    const TemporaryFolder folder;
    const SqliteStore store(folder.File("store.db"));
    Database database(folder.File("store.db"));

    Statement mode = database.Run("PRAGMA journal_mode");
    ASSERT_TRUE(mode.Step());
    EXPECT_EQ(mode.Text(0), "wal");
}

TEST(SqliteStore, dataVersion_changesWithAnotherProcessOnly)
{
    const TemporaryFolder folder;
    SqliteStore served(folder.File("store.db"));
    const std::int64_t version = served.DataVersion();
    served.AddRelease({"1", "6", "https://example.org/"});
    EXPECT_EQ(served.DataVersion(), version);

    SqliteStore(folder.File("store.db")).AddRelease({"1", "7", "https://example.org/"});
    EXPECT_NE(served.DataVersion(), version);
}
