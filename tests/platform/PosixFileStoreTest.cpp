// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StoredFiles.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace {

constexpr uid_t kNobody = 65534;

class PosixFileStoreTest : public StoredFiles
{
protected:
    PosixFileStoreTest() { ::chmod(folder.path().toLocal8Bit().constData(), 0777); }

    [[nodiscard]] QByteArray Native(const char* name) const { return QFile::encodeName(Path(name)); }
    void Put(const char* name, const QByteArray& content, mode_t mode = 0644) const
    {
        StoredFiles::Put(name, content);
        ASSERT_EQ(::chmod(Native(name).constData(), mode), 0);
    }
    // Runs @p step as a user without privileges, in a child process, and returns its result.
    [[nodiscard]] static bool AsUser(const std::function<bool()>& step)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            const bool isUser = ::geteuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
            ::_exit(isUser && step() ? 0 : 1);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    static struct stat StatusOf(const QByteArray& path)
    {
        struct stat status = {};
        ::stat(path.constData(), &status);
        return status;
    }
};

TEST_F(PosixFileStoreTest, read_unreadableFile_answersNothing)
{
    ASSERT_EQ(::mkfifo(Native("pipe").constData(), 0644), 0);
    EXPECT_EQ(files.Read(Path("missing"), kLimit), std::nullopt);
    EXPECT_EQ(files.Read(folder.path(), kLimit), std::nullopt);
    EXPECT_EQ(files.Read(Path("pipe"), kLimit), std::nullopt) << "a pipe would block for ever";
    EXPECT_EQ(files.Read(QStringLiteral("/dev/zero"), kLimit), std::nullopt);
    EXPECT_EQ(files.Read(QStringLiteral("/proc/self/mem"), kLimit), std::nullopt) << "nothing is mapped at 0";
    EXPECT_EQ(files.Read(QString(), kLimit), std::nullopt);
    Put("secret", "x", 0000);
    EXPECT_TRUE(AsUser([this] { return !files.Read(Path("secret"), kLimit).has_value(); }));
}

TEST_F(PosixFileStoreTest, spellings_theExactOneComesFirst)
{
    Put("a.xml", "small");
    Put("A.xml", "large");
    EXPECT_EQ(files.Read(Path("A.xml"), kLimit), QByteArray("large"));
    EXPECT_EQ(files.Read(Path("a.xml"), kLimit), QByteArray("small"));
}

TEST_F(PosixFileStoreTest, replace_missingFile_isCreatedWithTheUmask)
{
    const mode_t mask = ::umask(0027);
    EXPECT_TRUE(files.Replace(Path("a"), "new"));
    ::umask(mask);
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(StatusOf(Native("a")).st_mode & 07777, 0640U);
}

TEST_F(PosixFileStoreTest, replace_keepsModeAndOwner)
{
    Put("a", "old", 0606);
    const bool isRoot = ::geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(::chown(Native("a").constData(), 1, 2), 0);
    }
    const struct stat before = StatusOf(Native("a"));
    EXPECT_TRUE(files.Replace(Path("a"), "new"));
    const struct stat after = StatusOf(Native("a"));
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_NE(after.st_ino, before.st_ino) << "written beside and renamed";
}

TEST_F(PosixFileStoreTest, replace_fileOfAnotherUser_isWrittenInPlace_andKeepsItsOwner)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can give a file to somebody else";
    }
    Put("a", "a longer old content", 0666);
    EXPECT_TRUE(AsUser([this] { return files.Replace(Path("a"), "new"); }));
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(StatusOf(Native("a")).st_uid, 0U);
    EXPECT_EQ(Names(), QStringList{QStringLiteral("a")});
}

TEST_F(PosixFileStoreTest, replace_folderThatCannotBeWritten_fileThatCan_isWrittenInPlace)
{
    Put("a", "old", 0666);
    ::chmod(folder.path().toLocal8Bit().constData(), 0555);
    const ino_t before = StatusOf(Native("a")).st_ino;
    EXPECT_TRUE(AsUser([this] { return files.Replace(Path("a"), "a longer content"); }));
    EXPECT_EQ(Content("a"), "a longer content");
    EXPECT_TRUE(AsUser([this] { return files.Replace(Path("a"), "short"); }));
    EXPECT_EQ(Content("a"), "short");
    EXPECT_EQ(StatusOf(Native("a")).st_ino, before);
    EXPECT_TRUE(AsUser([this] { return !files.Replace(Path("missing"), "x"); }));
    ::chmod(folder.path().toLocal8Bit().constData(), 0777);
}

TEST_F(PosixFileStoreTest, replace_readOnlyFile_isFalse_andAsBefore)
{
    Put("a", "old", 0444);
    EXPECT_TRUE(AsUser([this] { return !files.Replace(Path("a"), "new"); }));
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Names(), QStringList{QStringLiteral("a")});
}

TEST_F(PosixFileStoreTest, replace_symbolicLinks_surviveAndLeadToTheNewContent)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("real")));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("other")));
    Put("real/a", "old");
    ASSERT_EQ(::symlink("../real/a", Native("other/link").constData()), 0);
    ASSERT_EQ(::symlink("other/link", Native("chain").constData()), 0);
    // ".." after a linked folder means the parent of its target, unlike in the text of the path.
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("far/deep")));
    ASSERT_EQ(::symlink("far/deep", Native("folder").constData()), 0);
    ASSERT_EQ(::symlink("folder/../../real/a", Native("crooked").constData()), 0);
    for (const char* link : {"other/link", "chain", "crooked"}) {
        EXPECT_TRUE(files.Replace(Path(link), link)) << link;
        EXPECT_TRUE(QFileInfo(Path(link)).isSymLink()) << link;
        EXPECT_EQ(Content("real/a"), link);
    }
}

TEST_F(PosixFileStoreTest, replace_danglingLink_createsItsTarget)
{
    ASSERT_EQ(::symlink("made", Native("link").constData()), 0);
    EXPECT_TRUE(files.Replace(Path("link"), "new"));
    EXPECT_TRUE(QFileInfo(Path("link")).isSymLink());
    EXPECT_EQ(Content("made"), "new");
}

TEST_F(PosixFileStoreTest, replace_noRegularFile_isFalse_andAsBefore)
{
    ASSERT_EQ(::mkfifo(Native("pipe").constData(), 0666), 0);
    ASSERT_EQ(::symlink("circle", Native("circle").constData()), 0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("folder")));
    for (const char* name : {"pipe", "circle", "folder", "missing/a"}) {
        EXPECT_FALSE(files.Replace(Path(name), "new")) << name;
    }
    EXPECT_FALSE(files.Replace(QString(), "new"));
    EXPECT_FALSE(files.Replace(QStringLiteral("/dev/full"), "new"));
    EXPECT_EQ(Names(),
              (QStringList{QStringLiteral("circle"), QStringLiteral("folder"), QStringLiteral("pipe")}));
    EXPECT_TRUE(QFileInfo(Path("circle")).isSymLink());
}

TEST_F(PosixFileStoreTest, replace_leftoverOfAKilledSave_isRemoved_nothingElse)
{
    Put("a", "old");
    Put("a.saving-abc123", "half");
    Put("a.saving-live00", "being written");
    Put("a.backup", "the user's own");
    Put("b.saving-abc123", "of another file");
    QFile live(Path("a.saving-live00"));
    ASSERT_TRUE(live.open(QIODevice::ReadWrite));
    ASSERT_EQ(::flock(live.handle(), LOCK_EX), 0);
    EXPECT_TRUE(files.Replace(Path("a"), "new"));
    EXPECT_EQ(Names(), (QStringList{QStringLiteral("a"), QStringLiteral("a.backup"),
                                    QStringLiteral("a.saving-live00"), QStringLiteral("b.saving-abc123")}));
}

TEST_F(PosixFileStoreTest, write_makesOrOverwrites_neverBlocks)
{
    EXPECT_TRUE(files.Write(Path("temp.html"), "a longer page"));
    EXPECT_TRUE(files.Write(Path("temp.html"), "page"));
    EXPECT_EQ(Content("temp.html"), "page");
    ASSERT_EQ(::mkfifo(Native("pipe").constData(), 0666), 0);
    EXPECT_FALSE(files.Write(Path("pipe"), "page"));
    EXPECT_FALSE(files.Write(folder.path(), "page"));
    EXPECT_FALSE(files.Write(QStringLiteral("/dev/full"), "page"));
}

} // namespace
