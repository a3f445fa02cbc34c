// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SqliteStore.h"

#include "server/AsNobody.h"
#include "server/ErrorOf.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "store/Migrations.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

using namespace beacond;
using testing::ElementsAre;
using testing::SizeIs;
using testing::StartsWith;

class SqliteStoreTest : public testing::Test
{
protected:
    [[nodiscard]] std::string ErrorOfOpening() const
    {
        return ErrorOf<StoreError>([this] { return std::make_unique<SqliteStore>(path); });
    }
    [[nodiscard]] std::string ErrorOfReading() const
    {
        return ErrorOf<StoreError>([this] { return SqliteStore::ToRead(path); });
    }
    [[nodiscard]] std::vector<std::string> NamesInFolder() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder / "")) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }
    [[nodiscard]] std::string Pragma(const char* name) const
    {
        Database database(path);
        Statement value = database.Run((std::string("PRAGMA ") + name).c_str());
        return value.Step() ? value.Text(0) : std::string();
    }

    TemporaryFolder folder;
    std::string path = folder.File("store.db");
};

TEST_F(SqliteStoreTest, fileOfAnotherVersion_isRefusedWithItsPath)
{
    (void)SqliteStore(path);
    Database(path).Execute("PRAGMA user_version = " + std::to_string(kSqliteMigrations.size() + 1));
    EXPECT_THAT(ErrorOfOpening(), StartsWith(path + ": written by a newer version of the service"));

    Database(path).Execute("PRAGMA user_version = 0");
    EXPECT_THAT(ErrorOfReading(), StartsWith(path + ": written by an older version of the service"));
}

TEST_F(SqliteStoreTest, open_otherFile_isRefusedAndKept)
{
    const std::string content(4096, 'x');
    Write(path, content);

    EXPECT_THAT(ErrorOfOpening(), StartsWith(path + ": "));
    EXPECT_EQ(Read(path), content);
}

TEST_F(SqliteStoreTest, open_fileOfAnotherApplication_isRefusedAndKept)
{
    for (const char* const sql : {"CREATE TABLE song (name)", "PRAGMA application_id = 7",
                                  "CREATE TABLE key_check (a); PRAGMA application_id = 7"}) {
        SCOPED_TRACE(sql);
        std::filesystem::remove(path);
        Database(path).Execute(sql);
        const std::string before = Read(path);

        EXPECT_EQ(ErrorOfOpening(), path + ": written by another application");
        EXPECT_EQ(ErrorOfReading(), path + ": written by another application");
        EXPECT_TRUE(Read(path) == before);
        EXPECT_THAT(NamesInFolder(), ElementsAre("store.db"));
    }
}

TEST_F(SqliteStoreTest, open_storeWithoutAnApplicationId_writesIt)
{
    (void)SqliteStore(path);
    Database(path).Execute("PRAGMA application_id = 0");
    (void)SqliteStore(path);

    EXPECT_EQ(Pragma("application_id"), std::to_string(0x44754265));
}

TEST_F(SqliteStoreTest, open_whileAnotherProcessWrites_needsNoLock)
{
    (void)SqliteStore(path);
    Database other(path);
    other.Execute("BEGIN IMMEDIATE");

    EXPECT_EQ(ErrorOfOpening(), "");
    EXPECT_EQ(ErrorOfReading(), "");
}

TEST_F(SqliteStoreTest, open_damagedPages_failsTheCallsAndKeepsTheFile)
{
    (void)SqliteStore(path);
    std::string content = Read(path);
    constexpr std::size_t kPage = 4096;
    {
        // Damage tables only: the schema, which has several pages, is read when the file is opened.
        Database database(path);
        Statement roots =
            database.Run("SELECT rootpage FROM sqlite_master WHERE name IN ('start_count', 'release')");
        while (roots.Step()) {
            content.replace((static_cast<std::size_t>(roots.Integer(0)) - 1) * kPage, kPage, kPage, 'x');
        }
    }
    Write(path, content);

    // Opening fails if one of these pages has a part of the schema.
    const std::string malformed = path + ": database disk image is malformed";
    EXPECT_EQ(ErrorOf<StoreError>([this] { return SqliteStore(path).Starts(); }), malformed);
    EXPECT_EQ(ErrorOf<StoreError>([this] {
                  SqliteStore(path).AddRelease({"1", "6", "https://example.org/"});
              }),
              malformed);
    EXPECT_TRUE(Read(path) == content);
}

TEST_F(SqliteStoreTest, open_folderWithoutRights_isRefusedWithThePath)
{
    path = folder.File("locked/store.db");
    std::filesystem::create_directory(folder / "locked");
    std::filesystem::permissions(folder / "", std::filesystem::perms(0755));
    std::filesystem::permissions(folder / "locked", std::filesystem::perms(0555));
    const AsNobody nobody;

    EXPECT_EQ(ErrorOfOpening(), path + ": unable to open database file");
}

TEST_F(SqliteStoreTest, toRead_listsAndChangesNothing)
{
    SqliteStore(path).AddRelease({"1", "6", "https://example.org/"});
    const std::string before = Read(path);
    {
        SqliteStore store = SqliteStore::ToRead(path);
        EXPECT_THAT(store.Releases(), SizeIs(1));
        EXPECT_THROW(store.AddRelease({"1", "7", "https://example.org/"}), StoreError);
    }
    EXPECT_TRUE(Read(path) == before);
    EXPECT_THAT(NamesInFolder(), ElementsAre("store.db"));
}

TEST_F(SqliteStoreTest, open_newFile_usesWriteAheadLog)
{
    const SqliteStore store(path);
    EXPECT_EQ(Pragma("journal_mode"), "wal");
}

TEST_F(SqliteStoreTest, dataVersion_changesWithAnotherProcessOnly)
{
    SqliteStore served(path);
    const std::int64_t version = served.DataVersion();
    served.AddRelease({"1", "6", "https://example.org/"});
    EXPECT_EQ(served.DataVersion(), version);

    SqliteStore(path).AddRelease({"1", "7", "https://example.org/"});
    EXPECT_NE(served.DataVersion(), version);
}

TEST_F(SqliteStoreTest, open_fileOfTheFirstSchema_keepsDevicesAndCodes)
{
    constexpr std::int64_t kNow = 1'800'000'000;
    {
        Database database(path);
        database.Execute(std::string(kSqliteMigrations[0]));
        database.Execute(
            "INSERT INTO device VALUES"
            " (2, 'mail', 'sealed 2', x'32', x'C2', 1800000000, x'A2', 1799999990, 1799999900, 'form', 'w2'),"
            " (3, 'mail', 'sealed 3', x'33', x'C3', 1800000000, NULL, NULL, 1799999900, 'form', 'w3'),"
            " (4, 'mail', 'sealed 4', x'34', x'C4', 1800000000, NULL, NULL, 1799999900, 'form', 'w4'),"
            " (9, 'mail', 'sealed 9', x'39', x'C9', 1800000000, NULL, NULL, 1799999900, 'form', 'w9');"
            "DELETE FROM device WHERE id = 9;"
            "INSERT INTO installation VALUES (x'A2', 2), (x'A3', 3);"
            "INSERT INTO device_prayer VALUES (2, 1, 1799990000), (4, 1, 1799990000);"
            "INSERT INTO outbox VALUES (7, 2, 1, '5:07', 'SA-G1', 1799990000),"
            " (8, 4, 1, '5:07', 'SA-G1', 1799990000);"
            "INSERT INTO release (name, sequence, url) VALUES ('1', '6', 'https://example.org/');"
            "PRAGMA user_version = 1");
    }
    SqliteStore store(path, [] { return kNow; });

    EXPECT_EQ(store.Releases().size(), 1U);
    EXPECT_THAT(store.Outbox(10), ElementsAre(OutboxRow{7, 2, 1, "5:07", "SA-G1"}))
        << "a device without an installation goes, with its texts";
    EXPECT_FALSE(store.QueueText("\xA2", 1, "5:07", "SA-G1")) << "the last text is less than six hours old";
    EXPECT_TRUE(store.QueueText("\xA3", 1, "5:07", "SA-G1")) << "a renewed code leaves the installation";
    EXPECT_EQ(store.Confirm("\xC2", "\xA2"), Confirmation::Confirmed) << "the code was used a moment ago";
    EXPECT_EQ(store.Confirm("\xC2", "pc"), Confirmation::Unknown);
    EXPECT_EQ(store.Confirm("\xC3", "second pc"), Confirmation::Confirmed);
    EXPECT_EQ(store.Confirm("\xC4", "third pc"), Confirmation::Confirmed);
    EXPECT_EQ(store.SignUp({"mail", "sealed", "4", "new", 1800, "form", "w"}, {}).device, 4);
    EXPECT_GT(store.SignUp({"mail", "sealed", "5", "other", 1800, "form", "w"}, {}).device, 9)
        << "a number is given once";
    EXPECT_TRUE(store.Forget("2"));
    EXPECT_THAT(store.Outbox(10), SizeIs(1)) << "the messages of a removed device are removed with it";
    EXPECT_EQ(Pragma("foreign_key_check"), "");
}

TEST_F(SqliteStoreTest, tryToWrite_tablesOfANewerService_isRefusedAndKeepsTheirVersion)
{
    SqliteStore store(path);
    Database(path).Execute("PRAGMA user_version = 99");

    EXPECT_THAT(ErrorOf<StoreError>([&store] { store.TryToWrite(); }),
                StartsWith(path + ": written by a newer version of the service"));
    EXPECT_EQ(Pragma("user_version"), "99");
}
