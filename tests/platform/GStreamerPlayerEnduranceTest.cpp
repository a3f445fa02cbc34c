// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "GStreamerPlayerFixture.h"
#include "fakes/Memory.h"

#include <QDir>
#include <QElapsedTimer>

namespace {

qsizetype EntriesOf(const char* folder)
{
    return QDir(QString::fromLatin1(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)
        .size();
}

TEST_F(GStreamerPlayerTest, hundredsOfSounds_leaveNothingBehind)
{
    constexpr int kSounds = 300;
    // By then all memory that is kept for the next sounds has been allocated.
    constexpr int kFirstSounds = 30;
    constexpr qint64 kMostGrowth = 2LL * 1024 * 1024;
    constexpr int kSpare = 4;
    ASSERT_TRUE(sound.Start());
    const QString path = Tone("short.wav", 0.02);
    // Each third plays to its end, the others are stopped at once or while they begin.
    const auto play = [&](int count) {
        for (int i = 0; i < count; ++i) {
            stopped = 0;
            player->SetUrl(path);
            if (i % 3 != 0) {
                QTest::qWait(i % 3 == 1 ? 0 : 5);
                player->Stop();
            }
            ASSERT_TRUE(WaitForStops(1)) << i;
        }
    };
    play(kFirstSounds);
    const qint64 memory = Memory::Trimmed();
    const auto runningThreads = [] { return EntriesOf("/proc/self/task"); };
    const auto openFiles = [] { return EntriesOf("/proc/self/fd"); };
    const qsizetype threads = runningThreads();
    const qsizetype files = openFiles();
    play(kSounds);
    EXPECT_TRUE(QTest::qWaitFor([&] { return runningThreads() <= threads + kSpare; }, kWait))
        << runningThreads();
    EXPECT_TRUE(QTest::qWaitFor([&] { return openFiles() <= files + kSpare; }, kWait)) << openFiles();
    const qint64 growth = Memory::Trimmed() - memory;
    std::printf("figure: %d sounds: %lld KiB more, threads %lld and %lld, files %lld and %lld\n", kSounds,
                static_cast<long long>(growth / 1024), static_cast<long long>(threads),
                static_cast<long long>(runningThreads()), static_cast<long long>(files),
                static_cast<long long>(openFiles()));
    if (Memory::kIsTrue) {
        EXPECT_LT(growth, kMostGrowth);
    }
}

TEST_F(GStreamerPlayerTest, soundServerHangs_blocksNoCall_andTheNextPlaysAfterwards)
{
    constexpr qint64 kPatience = 2'000;
    ASSERT_TRUE(sound.Start());
    const QString path = Tone("long.wav", 60.0, kOtherTone);
    player->SetUrl(path);
    ASSERT_TRUE(sound.WaitForTone(kOtherTone));
    sound.Hang();
    QElapsedTimer timer;
    timer.start();
    player->SetUrl(path);
    EXPECT_LT(timer.restart(), kPatience);
    player->Stop();
    EXPECT_LT(timer.restart(), kPatience);
    EXPECT_TRUE(WaitForStops(1));
    timer.restart();
    player.reset();
    EXPECT_LT(timer.elapsed(), kPatience);
    sound.GoOn();
    MakePlayer();
    stopped = 0;
    ExpectNextPlays();
}

} // namespace
