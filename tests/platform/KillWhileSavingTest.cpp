// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Environment.h"
#include "platform/SavedDocument.h"
#include "platform/SystemFileStore.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

namespace {

constexpr int kKills = 200;
constexpr int kMostLeftovers = 1;
constexpr qint64 kLimit = 1'000'000;
constexpr int kTooLong = 20'000; // milliseconds

// Starts the saver and returns the duration of its first save when that is done; 0 if it does not start.
std::chrono::microseconds StartSaver(QProcess& saver, const QString& file)
{
    saver.start(QStringLiteral(DUSKBEACON_SAVER), {file});
    return std::chrono::microseconds(
        saver.waitForReadyRead(kTooLong) ? saver.readAllStandardOutput().trimmed().toLongLong() : 0);
}

// The number of the document in the file; 0 if the document is not whole.
int NumberOfWholeDocument(const SystemFileStore& files, const QString& file)
{
    const QByteArray content = files.Read(file, kLimit).value_or(QByteArray());
    const int number = content.split('"').value(1).toInt();
    return content == SavedDocument(number) ? number : 0;
}

qsizetype Leftovers(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden).size() - 1;
}

// False if the saver had ended before, which it does when a save fails.
bool Kill(QProcess& saver)
{
    const bool runs = !saver.waitForFinished(0) && saver.state() == QProcess::Running;
    saver.kill();
    return saver.waitForFinished(kTooLong) && runs && saver.exitStatus() == QProcess::CrashExit;
}

TEST(KillWhileSaving, atAnyInstant_leavesAWholeDocument)
{
    const int kills = FromEnvironment("DUSKBEACON_KILL_ROUNDS", kKills);
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("settings.xml"));
    const SystemFileStore files;
    std::mt19937 random(20260320); // NOLINT: the same sequence in each run
    // The time of the kill, in units of the duration of one save.
    std::uniform_real_distribution<double> saves(0.0, 4.0);
    int interrupted = 0;
    int whole = 0;
    int last = 0;
    int changes = 0;
    for (int i = 0; i < kills; ++i) {
        QProcess saver;
        const std::chrono::microseconds firstSave = StartSaver(saver, file);
        ASSERT_GT(firstSave.count(), 0) << "the saver did not start";
        std::this_thread::sleep_for(firstSave * saves(random));
        ASSERT_TRUE(Kill(saver)) << "a save failed before the kill";

        const int number = NumberOfWholeDocument(files, file);
        ASSERT_GT(number, 0) << "after kill " << i;
        ++whole;
        changes += number != last ? 1 : 0;
        last = number;
        const qsizetype leftovers = Leftovers(folder.path());
        ASSERT_LE(leftovers, kMostLeftovers) << "each save removes leftovers";
        interrupted += static_cast<int>(leftovers);
    }
    std::printf("figure: kills while saving: %d, in the middle of a save %d, whole afterwards %d\n", kills,
                interrupted, whole);
    EXPECT_GT(interrupted, kills / 20) << "too few kills hit a save";
    EXPECT_GT(changes, kills / 10) << "too few saves between the kills";
}

} // namespace
