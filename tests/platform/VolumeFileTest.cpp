// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SoundPlayer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class VolumeFileTest : public testing::Test
{
protected:
    VolumeFileTest()
    {
        qputenv("HOME", folder.path().toUtf8());
        qputenv("XDG_STATE_HOME", folder.filePath(QStringLiteral("state")).toUtf8());
    }
    void Write(const QByteArray& content) const
    {
        ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("state/dusk-beacon"))));
        QFile file(Path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QString Path() const { return folder.filePath(QStringLiteral("state/dusk-beacon/volume")); }
    [[nodiscard]] static QByteArray Content(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
};

TEST_F(VolumeFileTest, construction_readsItOrTakesFifty)
{
    const std::pair<QByteArray, int> rows[]{{"0\n", 0},
                                            {"100\n", 100},
                                            {"37\n", 37},
                                            {"37", 37},
                                            {"", 50},
                                            {"loud\n", 50},
                                            {"-1\n", 50},
                                            {"101\n", 50},
                                            {"50.5\n", 50},
                                            {"10 20\n", 50},
                                            {"99999999999\n", 50},
                                            {QByteArray(8, '\0'), 50},
                                            {QByteArray(1'000'000, '1'), 50}};
    for (const auto& [content, volume] : rows) {
        Write(content);
        EXPECT_EQ(SoundPlayer().Volume(), volume) << content.left(20).toStdString();
    }
}

TEST_F(VolumeFileTest, missing_isFifty_andNothingIsWritten)
{
    EXPECT_EQ(SoundPlayer().Volume(), 50);
    EXPECT_FALSE(QFile::exists(Path()));
}

TEST_F(VolumeFileTest, folderOrPipeInItsPlace_isFifty)
{
    ASSERT_TRUE(QDir().mkpath(Path()));
    EXPECT_EQ(SoundPlayer().Volume(), 50);
    ASSERT_TRUE(QDir().rmdir(Path()));
    ASSERT_EQ(::mkfifo(Path().toUtf8().constData(), 0600), 0);
    EXPECT_EQ(SoundPlayer().Volume(), 50);
}

TEST_F(VolumeFileTest, setVolume_isKeptForTheNextRun)
{
    {
        SoundPlayer player;
        player.SetVolume(73);
        EXPECT_EQ(player.Volume(), 73);
    }
    EXPECT_EQ(SoundPlayer().Volume(), 73);
    EXPECT_EQ(Content(Path()), "73\n");
    EXPECT_EQ(QDir(folder.filePath(QStringLiteral("state/dusk-beacon"))).entryList(QDir::Files).size(), 1)
        << "nothing else is left beside it";
}

TEST_F(VolumeFileTest, setVolume_replacesTheFileWhole)
{
    const auto number = [this] {
        struct stat file = {};
        EXPECT_EQ(::stat(Path().toUtf8().constData(), &file), 0);
        return file.st_ino;
    };
    SoundPlayer player;
    player.SetVolume(73);
    // An open reader keeps the old file, so that its inode number is not reused.
    QFile reader(Path());
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    const ino_t before = number();
    player.SetVolume(100);
    EXPECT_NE(number(), before) << "a crash inside the save would leave half a file";
    EXPECT_EQ(reader.readAll(), "73\n");
    EXPECT_EQ(Content(Path()), "100\n") << "written before the call returns";
}

TEST_F(VolumeFileTest, setVolume_outsideTheScale_isBroughtToItsEnd)
{
    SoundPlayer player;
    player.SetVolume(101);
    EXPECT_EQ(player.Volume(), 100);
    player.SetVolume(-1);
    EXPECT_EQ(player.Volume(), 0);
}

TEST_F(VolumeFileTest, setVolume_thatCannotBeKept_stillHolds)
{
    Write("20\n");
    ASSERT_TRUE(QFile::remove(Path()));
    ASSERT_TRUE(QDir().mkpath(Path())) << "a folder can't be replaced by a file";
    SoundPlayer player;
    player.SetVolume(80);
    EXPECT_EQ(player.Volume(), 80);
}

TEST_F(VolumeFileTest, stateFolderUnsetOrRelative_isTheOneUnderHome)
{
    for (const char* const named : {"", "relative/state"}) {
        qputenv("XDG_STATE_HOME", named);
        SoundPlayer player;
        const int volume = player.Volume() == 61 ? 62 : 61;
        player.SetVolume(volume);
        EXPECT_EQ(Content(folder.filePath(QStringLiteral(".local/state/dusk-beacon/volume"))),
                  QByteArray::number(volume) + '\n');
    }
}

} // namespace
