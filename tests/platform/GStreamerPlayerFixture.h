// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundServer.h"
#include "TestSounds.h"
#include "platform/SoundPlayer.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>

/// A player, a sound server that the test may start, and a folder for sounds.
class GStreamerPlayerTest : public testing::Test
{
protected:
    static constexpr int kWait = 20'000;
    static constexpr double kTone = 440.0;
    static constexpr double kOtherTone = 1000.0;

    GStreamerPlayerTest()
    {
        qputenv("XDG_STATE_HOME", Path("state").toUtf8());
        MakePlayer();
    }

    void MakePlayer()
    {
        player = std::make_unique<SoundPlayer>();
        player->SetPlayStateHandler([this](int state) {
            EXPECT_EQ(QThread::currentThread(), qApp->thread());
            EXPECT_EQ(state, MediaPlayer::kStopped);
            ++stopped;
        });
    }
    [[nodiscard]] QString Path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
    [[nodiscard]] QString Write(const char* name, const QByteArray& content) const
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return Path(name);
    }
    [[nodiscard]] QString Tone(const char* name, double seconds, double hertz = kTone) const
    {
        EXPECT_TRUE(WriteTone(Path(name), hertz, seconds)) << name;
        return Path(name);
    }
    /// Starts the sound server and plays a tone of a minute.
    void PlayLongTone()
    {
        ASSERT_TRUE(sound.Start());
        player->SetUrl(Tone("long.wav", 60.0));
        ASSERT_TRUE(sound.WaitForTone(kTone));
    }
    [[nodiscard]] bool WaitForStops(int count) const
    {
        return QTest::qWaitFor([&] { return stopped >= count; }, kWait);
    }
    [[nodiscard]] bool ReportsWithin(int milliseconds) const
    {
        return QTest::qWaitFor([&] { return stopped > 0; }, milliseconds);
    }
    // A bad path before had no effect: the next sound plays, and its stop is the only one.
    void ExpectNextPlays()
    {
        player->SetUrl(Tone("next.wav", 0.6));
        EXPECT_TRUE(sound.WaitForTone(kTone));
        EXPECT_TRUE(WaitForStops(1));
        EXPECT_EQ(stopped, 1);
    }

    QTemporaryDir folder;
    SoundServer sound;
    std::unique_ptr<SoundPlayer> player;
    int stopped = 0;
};
