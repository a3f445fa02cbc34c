// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SqliteStore.h"

#include "server/AsNobody.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "store/Migrations.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

using namespace beacond;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::string ErrorOf(const std::function<void()>& deed)
{
    try {
        deed();
    } catch (const StoreError& error) {
        return error.what();
    }
    return {};
}

std::string ErrorOfOpening(const std::string& path)
{
    return ErrorOf([&path] { const SqliteStore store(path); });
}

std::string ErrorOfReading(const std::string& path)
{
    return ErrorOf([&path] { (void)SqliteStore::ToRead(path); });
}

std::vector<std::string> NamesIn(const TemporaryFolder& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "")) {
        names.push_back(entry.path().filename().string());
    }
    return names;
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

TEST(SqliteStore, open_otherFile_isRefusedAndKept)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    const std::string content(4096, 'x');
    Write(path, content);

    EXPECT_THAT(ErrorOfOpening(path), StartsWith(path + ": "));
    EXPECT_EQ(Read(path), content);
}

TEST(SqliteStore, open_fileOfAnotherApplication_isRefusedAndKept)
{
    for (const char* const sql : {"CREATE TABLE song (name)", "PRAGMA application_id = 7",
                                  "CREATE TABLE key_check (a); PRAGMA application_id = 7"}) {
        SCOPED_TRACE(sql);
        const TemporaryFolder folder;
        const std::string path = folder.File("store.db");
        Database(path).Execute(sql);
        const std::string before = Read(path);

        EXPECT_EQ(ErrorOfOpening(path), path + ": written by another application");
        EXPECT_EQ(ErrorOfReading(path), path + ": written by another application");
        EXPECT_TRUE(Read(path) == before);
        EXPECT_THAT(NamesIn(folder), ElementsAre("store.db"));
    }
}

TEST(SqliteStore, open_storeWithoutAnApplicationId_writesIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    (void)SqliteStore(path);
    Database(path).Execute("PRAGMA application_id = 0");
    (void)SqliteStore(path);

    Database database(path);
    Statement mark = database.Run("PRAGMA application_id");
    ASSERT_TRUE(mark.Step());
    EXPECT_EQ(mark.Integer(0), 0x44754265);
}

TEST(SqliteStore, open_whileAnotherProcessWrites_needsNoLock)
{
    const TemporaryFolder folder;
    (void)SqliteStore(folder.File("store.db"));
    Database other(folder.File("store.db"));
    other.Execute("BEGIN IMMEDIATE");

    EXPECT_EQ(ErrorOfOpening(folder.File("store.db")), "");
    EXPECT_EQ(ErrorOfReading(folder.File("store.db")), "");
}

TEST(SqliteStore, open_damagedPages_failsTheCallsAndKeepsTheFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    (void)SqliteStore(path);
    std::string content = Read(path);
    constexpr std::size_t kHeaderPage = 4096;
    content.replace(kHeaderPage, content.size() - kHeaderPage, content.size() - kHeaderPage, 'x');
    Write(path, content);

    SqliteStore store(path);
    const std::string error = ErrorOf([&store] { (void)store.Starts(); });
    EXPECT_EQ(error, path + ": database disk image is malformed");
    EXPECT_NE(ErrorOf([&store] { store.AddRelease({"1", "6", "https://example.org/"}); }), "");
    EXPECT_TRUE(Read(path) == content);
}

TEST(SqliteStore, open_folderWithoutRights_isRefusedWithThePath)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("locked/store.db");
    std::filesystem::create_directory(folder / "locked");
    std::filesystem::permissions(folder / "", std::filesystem::perms(0755));
    std::filesystem::permissions(folder / "locked", std::filesystem::perms(0555));
    const AsNobody nobody;

    EXPECT_EQ(ErrorOfOpening(path), path + ": unable to open database file");
}

TEST(SqliteStore, toRead_listsAndChangesNothing)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    SqliteStore(path).AddRelease({"1", "6", "https://example.org/"});
    const std::string before = Read(path);
    {
        SqliteStore store = SqliteStore::ToRead(path);
        EXPECT_THAT(store.Releases(), SizeIs(1));
        EXPECT_THROW(store.AddRelease({"1", "7", "https://example.org/"}), StoreError);
    }
    EXPECT_TRUE(Read(path) == before);
    EXPECT_THAT(NamesIn(folder), ElementsAre("store.db"));
}

TEST(SqliteStore, toRead_missingFile_isRefusedAndNotCreated)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");

    EXPECT_EQ(ErrorOfReading(path), path + ": there is no store yet; the service makes it when it starts");
    EXPECT_THAT(NamesIn(folder), IsEmpty());
}

TEST(SqliteStore, toRead_fileOfAnOlderVersion_isRefused)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    (void)SqliteStore(path);
    Database(path).Execute("PRAGMA user_version = 0");

    EXPECT_THAT(ErrorOfReading(path), StartsWith(path + ": written by an older version of the service"));
}

TEST(SqliteStore, open_missingFolder_isRefusedWithThePath)
{
    EXPECT_THAT(ErrorOfOpening("/nonexistent/store.db"), HasSubstr("/nonexistent/store.db"));
}

TEST(SqliteStore, open_newFile_usesWriteAheadLog)
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

TEST(SqliteStore, open_fileOfTheFirstSchema_keepsDevicesAndCodes)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
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
    EXPECT_THAT(store.Outbox(10), testing::ElementsAre(OutboxRow{7, 2, 1, "5:07", "SA-G1"}))
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
    EXPECT_THAT(store.Outbox(10), testing::SizeIs(1)) << "what refers to a device still goes with it";
    Database database(path);
    EXPECT_FALSE(database.Run("PRAGMA foreign_key_check").Step());
}

TEST(SqliteStore, tryToWrite_tablesOfANewerService_isRefusedAndKeepsTheirVersion)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    SqliteStore store(path);
    Database newer(path);
    newer.Execute("PRAGMA user_version = 99");

    EXPECT_THAT(ErrorOf([&store] { store.TryToWrite(); }),
                StartsWith(path + ": written by a newer version of the service"));
    Statement version = newer.Run("PRAGMA user_version");
    ASSERT_TRUE(version.Step());
    EXPECT_EQ(version.Integer(0), 99);
}

TEST(SqliteStore, fileReplacedByAnother_failsWritesAndDataVersion)
{
    const TemporaryFolder folder;
    const std::string path = folder.File("store.db");
    (void)SqliteStore(folder.File("backup.db"));
    SqliteStore store(path);
    std::filesystem::rename(folder / "backup.db", path);

    const std::string error = path + ": moved or replaced while the service runs; start the service again";
    EXPECT_EQ(ErrorOf([&store] { (void)store.DataVersion(); }), error);
    EXPECT_EQ(ErrorOf([&store] { store.Begin(); }), error);
}
