// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/Environment.h"
#include "fakes/LockableFiles.h"
#include "fakes/SettingsFile.h"
#include "service/StartUpProgram.h"

#include <gtest/gtest.h>

namespace {

/// The program on a network that answers at the start and drops packets from then on: each probe lasts until
/// its time limit and fails.
class YearOfRefreshes : public testing::TestWithParam<const char*>
{
protected:
    YearOfRefreshes()
    {
        WriteSettings(SettingsText()
                          .replace(QStringLiteral("popup=\"true\""), QStringLiteral("popup=\"false\""))
                          .replace(QStringLiteral("enabled=\"false\""), QStringLiteral("enabled=\"true\"")));
        // The page of the strip need not be written half a million times.
        m_files.isLocked = true;
        platform.clock.Set(QDate(2026, 12, 31), QTime(23, 0));
        m_second = platform.clock.now;
        m_program.calculation.slots_.fill(-1);
        platform.http.reachable = true;
        platform.http.replies[QStringLiteral("getAd.pl")] =
            "<root wait_time='" + QByteArray(GetParam()) + "'/>";
        m_program.Start();
        platform.http.reachable = false;
        platform.http.whileProbing = [this] {
            ++probes;
            platform.http.probes.clear();
            platform.clock.now = platform.clock.now.addMSecs(Http::kLongestReachMilliseconds);
        };
    }

    /// Six alerts at minutes that move through the day, so that they meet the refreshes in every way.
    QStringList SetSlots(const QDate& day)
    {
        QStringList times;
        int minute = static_cast<int>(1 + day.dayOfYear() * 37 % 239);
        for (const std::size_t slot : {1, 2, 5, 6, 9, 10}) {
            m_program.calculation.slots_.at(slot - 1) = static_cast<std::int16_t>(minute);
            times << QTime(0, 0).addSecs(minute * 60).toString(QStringLiteral("h:mm"));
            minute += 240;
        }
        return times;
    }
    /// Ticks come up to a second late; one that was held up for longer is followed at once by that of the
    /// second reached.
    void PassUntil(const QDateTime& end)
    {
        QDateTime& now = platform.clock.now;
        while (m_second < end) {
            m_late = (m_late + 379) % 1000;
            now = std::max(now, m_second.addMSecs(m_late));
            platform.timers.Ticker()->Fire();
            m_second = std::max(m_second.addSecs(1), now.addMSecs(-now.time().msec()));
        }
    }
    /// The times of the alarms since the last call: each sends a request.
    QStringList Alarms()
    {
        QStringList times;
        for (const QString& request : std::exchange(platform.http.requests, {})) {
            if (request.contains(u"prayerCall.pl")) {
                times << request.section(QStringLiteral("&time="), 1).section(u'&', 0, 0);
            }
        }
        return times;
    }

    FakePlatform platform;
    int probes = 0;

private:
    QDateTime m_second;
    int m_late = 0;
    LockableFiles m_files;
    Platform m_interfaces = platform.With(m_files, platform.http);
    Program m_program{m_interfaces};
};

TEST_P(YearOfRefreshes, networkThatDropsPackets_losesNoAlert)
{
    const QDate first(2027, 1, 1);
    const int days = FromEnvironment("DUSKBEACON_YEAR_DAYS", 365);
    PassUntil(QDateTime(first, QTime(0, 0), Qt::UTC));
    int due = 0;
    int given = 0;
    for (QDate day = first; day < first.addDays(days); day = day.addDays(1)) {
        Alarms();
        // Before the tick that begins the day.
        const QStringList expected = SetSlots(day);
        PassUntil(QDateTime(day.addDays(1), QTime(0, 0), Qt::UTC));
        due += static_cast<int>(expected.size());
        for (const QString& time : Alarms()) {
            given += expected.contains(time) ? 1 : 0;
        }
    }
    std::printf("figure: a strip each %s minutes, %d days, %d probes: %d alerts due, %d lost\n", GetParam(),
                days, probes, due, due - given);
    EXPECT_EQ(given, due);
    EXPECT_TRUE(platform.boxes.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Minutes, YearOfRefreshes, testing::Values("10", "1"),
                         [](const auto& row) { return "each" + std::string(row.param); });

} // namespace
