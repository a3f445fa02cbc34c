// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StoredFiles.h"
#include "platform/SystemFileStore.h"

#include <gtest/gtest.h>

namespace {

class FileStoreTest : public StoredFiles
{
};

TEST_F(FileStoreTest, read_wholeContent_upToTheLimit)
{
    Put("a", QByteArray(kLimit, 'x'));
    EXPECT_EQ(files.Read(Path("a"), kLimit), QByteArray(kLimit, 'x'));
    EXPECT_EQ(files.Read(Path("a"), kLimit - 1), std::nullopt);
    constexpr qint64 kGenerous = 32LL * 1024 * 1024;
    EXPECT_LT(files.Read(Path("a"), kGenerous)->capacity(), 2 * kLimit) << "allocates the whole limit";
    Put("empty", "");
    EXPECT_EQ(files.Read(Path("empty"), kLimit), QByteArray());
}

TEST_F(FileStoreTest, spellingsInAnyCase_meanOneFile)
{
    Put("settings.xml", "old");
    EXPECT_EQ(files.Read(Path("settings.XML"), kLimit), QByteArray("old"));
    EXPECT_TRUE(files.Replace(Path("SETTINGS.xml"), "new"));
    EXPECT_EQ(Content("settings.xml"), "new");
    EXPECT_EQ(Names(), QStringList{QStringLiteral("settings.xml")});
}

TEST_F(FileStoreTest, replace_relativeName_isTakenFromTheWorkingDirectory)
{
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    EXPECT_TRUE(files.Replace(QStringLiteral("settings.xml"), "new"));
    QDir::setCurrent(before);
    EXPECT_EQ(Content("settings.xml"), "new");
}

TEST_F(FileStoreTest, replace_shorterAndLonger_leavesNothingBeside)
{
    for (const QByteArray& content : {QByteArray("0123456789"), QByteArray("1"), QByteArray(100'000, 'x')}) {
        EXPECT_TRUE(files.Replace(Path("a"), content));
        EXPECT_EQ(Content("a"), content);
    }
    EXPECT_EQ(Names(), QStringList{QStringLiteral("a")});
}

TEST_F(FileStoreTest, replace_pathOfOtherAlphabets_isKept)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("\u0645\u0648\u0627\u0642\u064A\u062A a")));
    const QString path = folder.filePath(QStringLiteral("\u0645\u0648\u0627\u0642\u064A\u062A a/\u0635.xml"));
    EXPECT_TRUE(files.Replace(path, "new"));
    EXPECT_EQ(files.Read(path, kLimit), QByteArray("new"));
}

} // namespace
