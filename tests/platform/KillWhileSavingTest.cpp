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
pid_t StartSaver(const QByteArray& file)
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
        ::execl(DUSKBEACON_SAVER, DUSKBEACON_SAVER, file.constData(), nullptr);
        ::_exit(127);
    }
    ::close(pipe[1]);
    char byte = 0;
    const bool started = ::read(pipe[0], &byte, 1) == 1;
    ::close(pipe[0]);
    return started ? child : -1;
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
        ASSERT_EQ(::kill(saver, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(saver, &status, 0), saver);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed before the kill";

        ASSERT_TRUE(document->Load(file)) << "after kill " << i;
        const DomNode root = document->DocumentElement();
        ASSERT_EQ(root.ChildCount(), 80);
        const QString number = root.Attribute(QStringLiteral("number"));
        ASSERT_EQ(root.Child(0).Attribute(QStringLiteral("city")), number);
        ASSERT_EQ(root.Child(79).Attribute(QStringLiteral("city")), number);
        changes += number.toInt() != last ? 1 : 0;
        last = number.toInt();
        const qsizetype leftovers = QDir().entryList(QDir::Files | QDir::Hidden).size() - 1;
        ASSERT_LE(leftovers, kMostLeftovers) << "the next save tidies up";
        interrupted += static_cast<int>(leftovers);
    }
    std::printf("%d of %d kills fell into the middle of a save\n", interrupted, kKills);
    EXPECT_GT(interrupted, kKills / 20) << "the kills must hit saves, or nothing has been shown";
    EXPECT_GT(changes, kKills / 10) << "the stream of saves must be under way";
}

} // namespace
