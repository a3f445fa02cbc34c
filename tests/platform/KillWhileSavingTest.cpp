// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "platform/Dom.h"

#include <QElapsedTimer>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <random>
#include <thread>

namespace {

constexpr int kKills = 1000;
constexpr int kMostLeftovers = 1;

// Starts the saver and returns when its first save is done.
pid_t StartSaver(const QByteArray& file, int firstNumber = 1)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
        return -1;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(pipe[1], STDOUT_FILENO);
        ::close(pipe[0]);
        ::close(pipe[1]);
        const QByteArray number = QByteArray::number(firstNumber);
        ::execl(DUSKBEACON_SAVER, DUSKBEACON_SAVER, file.constData(), number.constData(), nullptr);
        ::_exit(127);
    }
    ::close(pipe[1]);
    char byte = 0;
    const bool started = ::read(pipe[0], &byte, 1) == 1;
    ::close(pipe[0]);
    return started ? child : -1;
}

// The number of the whole document in the file; 0 for anything else.
int NumberOfWholeDocument(DomDocument& document, const QString& file)
{
    if (!document.Load(file)) {
        return 0;
    }
    const DomNode root = document.DocumentElement();
    const QString number = root.Attribute(QStringLiteral("number"));
    const QString city = QStringLiteral("city");
    const bool isWhole = root.ChildCount() == 80 && root.Child(0).Attribute(city) == number &&
                         root.Child(79).Attribute(city) == number;
    return isWhole ? number.toInt() : 0;
}

qsizetype Leftovers()
{
    return QDir().entryList(QDir::Files | QDir::Hidden).size() - 1;
}

// False if it had ended by itself, as it does when a save fails.
bool Kill(pid_t saver)
{
    int status = 0;
    return ::kill(saver, SIGKILL) == 0 && ::waitpid(saver, &status, 0) == saver && WIFSIGNALED(status);
}

TEST(KillWhileSaving, aThousandInstants_leaveAWholeDocumentEachTime)
{
    FakePlatform platform;
    const QString file = QStringLiteral("settings.xml");
    const auto document = platform.documents.Create();
    std::mt19937 random(20260320); // NOLINT: the same sequence in each run
    std::uniform_int_distribution<int> microseconds(0, 6000);
    int interrupted = 0;
    int last = 0;
    int changes = 0;
    for (int i = 0; i < kKills; ++i) {
        const pid_t saver = StartSaver(file.toLocal8Bit());
        ASSERT_GT(saver, 0) << "the saver did not start";
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        ASSERT_TRUE(Kill(saver)) << "a save failed before the kill";

        const int number = NumberOfWholeDocument(*document, file);
        ASSERT_GT(number, 0) << "after kill " << i;
        changes += number != last ? 1 : 0;
        last = number;
        const qsizetype leftovers = Leftovers();
        ASSERT_LE(leftovers, kMostLeftovers) << "the next save tidies up";
        interrupted += static_cast<int>(leftovers);
    }
    std::printf("figure: kills while saving: %d, in the middle of a save %d, whole afterwards %d\n", kKills,
                interrupted, kKills);
    EXPECT_GT(interrupted, kKills / 20) << "the kills must hit saves, or nothing has been shown";
    EXPECT_GT(changes, kKills / 10) << "the stream of saves must be under way";
}

TEST(KillWhileSaving, twoInstancesAtOnce_seeAWholeDocumentAllTheTime_andLoseNoSave)
{
    constexpr int kOther = 1'000'000;
    constexpr int kLoads = 3000;
    FakePlatform platform;
    const QString file = QStringLiteral("settings.xml");
    const auto document = platform.documents.Create();
    const pid_t one = StartSaver(file.toLocal8Bit());
    const pid_t other = StartSaver(file.toLocal8Bit(), kOther);
    int turns = 0;
    int whole = 0;
    bool wasOther = false;
    for (int i = 0; i < kLoads; ++i) {
        const int number = NumberOfWholeDocument(*document, file);
        whole += number > 0 ? 1 : 0;
        turns += (number >= kOther) != wasOther ? 1 : 0;
        wasOther = number >= kOther;
    }
    EXPECT_TRUE(Kill(one)) << "a save failed";
    EXPECT_TRUE(Kill(other)) << "a save failed";
    EXPECT_EQ(whole, kLoads);
    EXPECT_GT(NumberOfWholeDocument(*document, file), 0);
    EXPECT_GT(turns, kLoads / 100) << "both must be at it, or nothing has been shown";
    EXPECT_LE(Leftovers(), 2);
    std::printf("figure: two instances saving at once: loads %d, whole %d\n", kLoads, whole);
}

} // namespace
