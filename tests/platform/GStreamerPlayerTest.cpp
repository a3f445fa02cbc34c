// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "GStreamerPlayerFixture.h"
#include "fakes/NoThreads.h"
#include "platform/ProcessorTime.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <system_error>
#include <thread>

namespace {

constexpr qint64 kAtOnce = 20;
// Much longer than it takes to find that a path can't be played.
constexpr int kMoment = 250;

TEST_F(GStreamerPlayerTest, eachFormat_soundsAndReportsItsEnd)
{
    ASSERT_TRUE(sound.Start());
    for (const char* const name : {"tone.wav", "tone.mp3", "tone.ogg", "tone.flac"}) {
        SCOPED_TRACE(name);
        stopped = 0;
        player->SetUrl(Tone(name, 1.0));
        EXPECT_TRUE(sound.WaitForTone(kTone));
        EXPECT_EQ(stopped, 0) << "still playing";
        EXPECT_TRUE(WaitForStops(1));
        EXPECT_TRUE(sound.WaitForSilence());
        EXPECT_EQ(stopped, 1);
    }
}

class GStreamerPlayerBadPath : public GStreamerPlayerTest
{
protected:
    [[nodiscard]] QString Pipe() const
    {
        EXPECT_EQ(::mkfifo(Path("pipe.mp3").toUtf8().constData(), 0600), 0);
        return Path("pipe.mp3");
    }
    [[nodiscard]] QString SparseGigabytes() const
    {
        EXPECT_EQ(::truncate(Write("sparse.mp3", {}).toUtf8().constData(), 4LL << 30), 0);
        return Path("sparse.mp3");
    }
    [[nodiscard]] QString DanglingLink() const
    {
        EXPECT_TRUE(QFile::link(QStringLiteral("/nowhere/at/all"), Path("link.mp3")));
        return Path("link.mp3");
    }
    [[nodiscard]] QString Noise() const
    {
        QByteArray noise;
        for (unsigned i = 0, state = 1; i < 20'000; ++i) {
            state = state * 1664525U + 1013904223U;
            noise.append(static_cast<char>(state >> 24U));
        }
        return Write("noise.ogg", noise);
    }

    const QStringList paths{QString(),
                            Path("no.mp3"),
                            Write("text.mp3", QByteArray("Call to prayer\n").repeated(500)),
                            Write("empty.mp3", {}),
                            Noise(),
                            folder.path(),
                            Pipe(),
                            SparseGigabytes(),
                            DanglingLink(),
                            QStringLiteral("C:\\Sounds\\Azan.mp3"),
                            QStringLiteral("http://127.0.0.1:1/azan.mp3")};
};

TEST_F(GStreamerPlayerBadPath, setUrl_returnsAtOnce_andTheNextSoundPlays)
{
    ASSERT_TRUE(sound.Start());
    for (const QString& path : paths) {
        SCOPED_TRACE(path.toStdString());
        MakePlayer();
        stopped = 0;
        // The quickest of three: other processes may use the processor.
        qint64 quickest = kAtOnce;
        for (int attempt = 0; attempt < 3; ++attempt) {
            QElapsedTimer timer;
            timer.start();
            player->SetUrl(path);
            quickest = std::min(quickest, timer.elapsed());
        }
        EXPECT_LT(quickest, kAtOnce);
        ExpectNextPlays();
    }
}

// A sound that can't be played reports no end: the user stops it, and the link does not change before that.
TEST_F(GStreamerPlayerBadPath, stop_afterIt_isTheOnlyReport)
{
    for (const QString& path : paths) {
        SCOPED_TRACE(path.toStdString());
        MakePlayer();
        stopped = 0;
        player->SetUrl(path);
        EXPECT_FALSE(ReportsWithin(kMoment));
        player->Stop();
        EXPECT_TRUE(WaitForStops(1));
        EXPECT_EQ(stopped, 1);
    }
}

TEST_F(GStreamerPlayerTest, setUrl_first_leavesTheCostToItsThread)
{
    const QString path = Write("text.mp3", "text");
    const double before = ProcessorMilliseconds();
    player->SetUrl(path);
    const double milliseconds = ProcessorMilliseconds() - before;
    RecordProperty("milliseconds", std::to_string(milliseconds));
    // GStreamer's own start costs several milliseconds.
    EXPECT_LT(milliseconds, 3.0);
}

TEST_F(GStreamerPlayerBadPath, pipe_isNeverOpened)
{
    ASSERT_TRUE(sound.Start());
    player->SetUrl(Path("pipe.mp3"));
    ExpectNextPlays();
    const int writer = ::open(Path("pipe.mp3").toUtf8().constData(), O_WRONLY | O_NONBLOCK);
    EXPECT_EQ(writer, -1) << "the player has opened the pipe";
    EXPECT_EQ(errno, ENXIO);
}

TEST_F(GStreamerPlayerTest, noThread_isSilentUntilTheNextSound)
{
    ASSERT_TRUE(sound.Start());
    const QString path = Tone("tone.wav", 1.0);
    {
        const NoThreads noThreads;
        ASSERT_THROW(std::thread([] {}).join(), std::system_error);
        EXPECT_NO_THROW(player->SetUrl(path));
        EXPECT_FALSE(ReportsWithin(kMoment));
        player->SetVolume(40);
        player->Stop();
        EXPECT_TRUE(WaitForStops(1));
        EXPECT_NO_THROW(player->SetUrl(path));
    }
    stopped = 0;
    ExpectNextPlays();
}

TEST_F(GStreamerPlayerTest, noThread_delaysNoEnd)
{
    {
        const NoThreads noThreads;
        player->SetUrl(Path("tone.wav"));
    }
    QElapsedTimer timer;
    timer.start();
    player.reset();
    EXPECT_LT(timer.elapsed(), kMoment) << "the destructor waits for a thread that never started";
}

TEST_F(GStreamerPlayerTest, nameWithOddCharacters_plays)
{
    ASSERT_TRUE(sound.Start());
    const QString path = folder.filePath(QStringLiteral("a #1 100% ü?.wav"));
    ASSERT_TRUE(QFile::rename(Tone("plain.wav", 1.0), path));
    player->SetUrl(path);
    EXPECT_TRUE(sound.WaitForTone(kTone));
}

TEST_F(GStreamerPlayerTest, relativePath_isTakenAgainstTheWorkingDirectory)
{
    ASSERT_TRUE(sound.Start());
    const QString before = QDir::currentPath();
    static_cast<void>(Tone("near.wav", 1.0));
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    player->SetUrl(QStringLiteral("near.wav"));
    EXPECT_TRUE(sound.WaitForTone(kTone));
    QDir::setCurrent(before);
}

TEST_F(GStreamerPlayerTest, fileRemovedWhileItPlays_playsToItsEnd)
{
    ASSERT_TRUE(sound.Start());
    const QString path = Tone("gone.wav", 2.0);
    player->SetUrl(path);
    EXPECT_TRUE(sound.WaitForTone(kTone));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(WaitForStops(1));
    stopped = 0;
    player->SetUrl(path);
    ExpectNextPlays();
}

TEST_F(GStreamerPlayerTest, endOfASound_closesItsFile)
{
    ASSERT_TRUE(sound.Start());
    const QString path = Tone("tone.wav", 1.0);
    const auto isOpen = [&path] {
        const QFileInfoList files = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files);
        return std::any_of(files.begin(), files.end(),
                           [&path](const QFileInfo& file) { return file.symLinkTarget() == path; });
    };
    player->SetUrl(path);
    EXPECT_TRUE(sound.WaitForTone(kTone));
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(WaitForStops(1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isOpen(); }, kWait));
}

TEST_F(GStreamerPlayerTest, noSoundDevice_endsSilentlyAtItsTime)
{
    player->SetUrl(Tone("tone.wav", 0.5));
    EXPECT_TRUE(WaitForStops(1));
    ASSERT_TRUE(sound.Start()) << "the device comes back";
    stopped = 0;
    ExpectNextPlays();
}

TEST_F(GStreamerPlayerTest, soundServerVanishes_nextPlays_afterAStopOrWithout)
{
    for (const bool isStopped : {true, false}) {
        PlayLongTone();
        sound.Kill();
        if (isStopped) {
            player->Stop();
            EXPECT_TRUE(WaitForStops(1));
        }
        ASSERT_TRUE(sound.Start());
        stopped = 0;
        ExpectNextPlays();
        sound.Kill();
        stopped = 0;
    }
}

TEST_F(GStreamerPlayerTest, stop_fallsSilentAndIsReportedLater)
{
    PlayLongTone();
    player->Stop();
    EXPECT_EQ(stopped, 0) << "never inside the call";
    EXPECT_TRUE(WaitForStops(1));
    EXPECT_TRUE(sound.WaitForSilence());
    EXPECT_EQ(stopped, 1);
}

TEST_F(GStreamerPlayerTest, clearPlaylist_leavesNothingQueued)
{
    PlayLongTone();
    player->ClearPlaylist();
    EXPECT_TRUE(sound.WaitForSilence());
}

TEST_F(GStreamerPlayerTest, newPath_replacesWhatPlays)
{
    PlayLongTone();
    player->SetUrl(Tone("other.wav", 1.0, kOtherTone));
    EXPECT_TRUE(sound.WaitForTone(kOtherTone));
    EXPECT_TRUE(WaitForStops(1));
    EXPECT_TRUE(sound.WaitForSilence());
    EXPECT_EQ(stopped, 1) << "the replaced sound must not disable the link of the new one";
}

TEST_F(GStreamerPlayerTest, stopThenNewPathAtOnce_reportsTheNewOneOnly)
{
    PlayLongTone();
    player->Stop();
    player->SetUrl(Tone("other.wav", 1.0, kOtherTone));
    EXPECT_TRUE(sound.WaitForTone(kOtherTone));
    EXPECT_EQ(stopped, 0);
    EXPECT_TRUE(WaitForStops(1));
}

TEST_F(GStreamerPlayerTest, destroyedWhilePlaying_reportsNothing)
{
    PlayLongTone();
    player.reset();
    EXPECT_TRUE(sound.WaitForSilence());
    EXPECT_EQ(stopped, 0);
}

TEST_F(GStreamerPlayerTest, volume_isLinearAndFollowsWhilePlaying)
{
    ASSERT_TRUE(sound.Start());
    player->SetVolume(100);
    player->SetUrl(Tone("long.wav", 60.0));
    ASSERT_TRUE(sound.WaitForTone(kTone));
    const auto isAt = [&](double expected) {
        return QTest::qWaitFor([&] { return std::abs(sound.LatestAmplitude(kTone) - expected) < 0.02; },
                               kWait);
    };
    // The tone itself has half the full amplitude.
    EXPECT_TRUE(isAt(0.5)) << sound.LatestAmplitude(kTone);
    player->SetVolume(50);
    EXPECT_TRUE(isAt(0.25)) << sound.LatestAmplitude(kTone);
    player->SetVolume(10);
    EXPECT_TRUE(isAt(0.05)) << sound.LatestAmplitude(kTone);
    player->SetVolume(0);
    EXPECT_TRUE(sound.WaitForSilence());
    EXPECT_EQ(stopped, 0) << "silent, not stopped";
    player->Stop();
    EXPECT_TRUE(WaitForStops(1));
}

TEST_F(GStreamerPlayerTest, volumeZero_playsSilentlyToTheEnd)
{
    ASSERT_TRUE(sound.Start());
    player->SetVolume(0);
    player->SetUrl(Tone("tone.wav", 0.5));
    EXPECT_TRUE(WaitForStops(1));
    EXPECT_LT(sound.LatestAmplitude(kTone), 1e-4);
}

} // namespace
