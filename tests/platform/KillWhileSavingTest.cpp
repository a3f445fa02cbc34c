// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Environment.h"
#include "fakes/FakePlatform.h"
#include "store/Dom.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

constexpr int kKills = 200;
constexpr int kMostLeftovers = 1;

struct Saver
{
    pid_t pid = -1;
    std::chrono::microseconds firstSave{0};
};

// Starts the saver and returns when its first save is done.
Saver StartSaver(const QByteArray& file)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
        return {};
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
    std::array<char, 32> line{};
    const bool started = ::read(pipe[0], line.data(), line.size() - 1) > 0;
    ::close(pipe[0]);
    return {started ? child : -1, std::chrono::microseconds(std::atoll(line.data()))};
}

// The number of the document in the file; 0 if the document is not whole.
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

// False if the saver had ended before, which it does when a save fails.
bool Kill(pid_t saver)
{
    int status = 0;
    // kill() sends the signal to a process group if the identifier is below 1.
    return saver > 0 && ::kill(saver, SIGKILL) == 0 && ::waitpid(saver, &status, 0) == saver &&
           WIFSIGNALED(status);
}

TEST(KillWhileSaving, atAnyInstant_leavesAWholeDocument)
{
    const int kills = FromEnvironment("DUSKBEACON_KILL_ROUNDS", kKills);
    FakePlatform platform;
    const QString file = QStringLiteral("settings.xml");
    const auto document = std::make_shared<DomDocument>(platform.files, platform.http);
    std::mt19937 random(20260320); // NOLINT: the same sequence in each run
    // The time of the kill, in units of the duration of one save.
    std::uniform_real_distribution<double> saves(0.0, 4.0);
    int interrupted = 0;
    int whole = 0;
    int last = 0;
    int changes = 0;
    for (int i = 0; i < kills; ++i) {
        const Saver saver = StartSaver(file.toLocal8Bit());
        ASSERT_GT(saver.pid, 0) << "the saver did not start";
        std::this_thread::sleep_for(saver.firstSave * saves(random));
        ASSERT_TRUE(Kill(saver.pid)) << "a save failed before the kill";

        const int number = NumberOfWholeDocument(*document, file);
        ASSERT_GT(number, 0) << "after kill " << i;
        ++whole;
        changes += number != last ? 1 : 0;
        last = number;
        const qsizetype leftovers = Leftovers();
        ASSERT_LE(leftovers, kMostLeftovers) << "each save removes leftovers";
        interrupted += static_cast<int>(leftovers);
    }
    std::printf("figure: kills while saving: %d, in the middle of a save %d, whole afterwards %d\n", kills,
                interrupted, whole);
    EXPECT_GT(interrupted, kills / 20) << "too few kills hit a save";
    EXPECT_GT(changes, kills / 10) << "too few saves between the kills";
}

} // namespace
