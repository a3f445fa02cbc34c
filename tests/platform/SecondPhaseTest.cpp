// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtClock.h"

#include <QTimeZone>

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

// A ticker with a simulated clock, which advances when a timer is waited for; it may be fast, slow, or be
// set.
class SimulatedTicker
{
public:
    explicit SimulatedTicker(qint64 start)
        : wall(static_cast<double>(start))
        , m_phase(Now())
        , m_wait(m_phase.MillisecondsToNext(Now()))
    {
    }

    // Waits for the timer, which fires @p late milliseconds late, or early if negative.
    void Wait(double late, int times = 1)
    {
        for (int i = 1; i < times; ++i) {
            Wait(late);
        }
        wall += (m_wait + late) * rate;
        const QDateTime now = Now();
        m_wait = m_phase.MillisecondsToNext(now);
        if (m_phase.Enter(now)) {
            ++hits[now.toSecsSinceEpoch()];
            latest = now.time().msec();
        }
    }

    [[nodiscard]] QDateTime Now() const
    {
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(wall), Qt::UTC);
    }

    double wall = 0.0;
    /// Wall-clock milliseconds in one millisecond of the timer.
    double rate = 1.0;
    std::map<qint64, int> hits;
    int latest = 0;

private:
    SecondPhase m_phase;
    int m_wait = 0;
};

constexpr qint64 kStart = 1'774'000'000'437;

// True if each second from the first hit to the last was hit once.
testing::AssertionResult EachSecondOnce(const std::map<qint64, int>& hits)
{
    qint64 expected = hits.begin()->first;
    for (const auto& [second, count] : hits) {
        if (second != expected++) {
            return testing::AssertionFailure() << "second " << expected - 1 << " was skipped";
        }
        if (count != 1) {
            return testing::AssertionFailure() << "second " << second << " was hit " << count << " times";
        }
    }
    return testing::AssertionSuccess();
}

TEST(SecondPhase, aDayOfWaits_hitsEachSecondOnce)
{
    struct Row
    {
        const char* name;
        double earliest;
        double latest;
        double rate;
    };
    for (const Row& row :
         {Row{"exact", 0.0, 0.001, 1.0}, Row{"late", 0.0, 40.0, 1.0}, Row{"very late", 0.0, 900.0, 1.0},
          Row{"early", -0.9, 0.0, 1.0}, Row{"early and late", -0.9, 40.0, 1.0},
          Row{"clock runs fast", 0.0, 3.0, 1.001}, Row{"clock runs slow", 0.0, 3.0, 0.999}}) {
        SCOPED_TRACE(row.name);
        SimulatedTicker ticker(kStart);
        ticker.rate = row.rate;
        std::mt19937 random(4711); // NOLINT: the same sequence in each run
        std::uniform_real_distribution<double> late(row.earliest, row.latest);
        const double end = ticker.wall + 86'400'000.0;
        while (ticker.wall < end) {
            ticker.Wait(late(random));
            ASSERT_LE(ticker.latest, row.latest + 2.0) << "out of phase";
        }
        EXPECT_TRUE(EachSecondOnce(ticker.hits));
        EXPECT_GE(ticker.hits.size(), 86'399U);
    }
}

TEST(SecondPhase, clockSetAWhileForward_isFollowedWithTheNextSecond)
{
    SimulatedTicker ticker(kStart);
    ticker.Wait(1.0, 10);
    ticker.wall += 3'600'250.0;
    ticker.hits.clear();
    ticker.Wait(1.0, 10);
    EXPECT_TRUE(EachSecondOnce(ticker.hits));
    EXPECT_GE(ticker.hits.size(), 9U);
    EXPECT_LE(ticker.latest, 3) << "back in phase";
}

TEST(SecondPhase, clockSetBack_isFollowed_andItsSecondsComeAgain)
{
    SimulatedTicker ticker(kStart);
    ticker.Wait(1.0, 10);
    const qint64 before = ticker.hits.rbegin()->first;
    ticker.wall -= 5'300.0;
    ticker.Wait(1.0, 10);
    EXPECT_EQ(ticker.hits.at(before), 2);
    EXPECT_LE(ticker.latest, 3);
}

TEST(SecondPhase, clockPutBackByMilliseconds_hitsNoSecondTwice)
{
    SimulatedTicker ticker(kStart);
    std::mt19937 random(4711); // NOLINT: the same sequence in each run
    std::uniform_real_distribution<double> step(0.0, 20.0);
    for (int i = 0; i < 100'000; ++i) {
        ticker.Wait(1.0);
        // Small corrections at any time of the second, except for its first milliseconds.
        ticker.wall += 100.0;
        ticker.wall -= step(random);
    }
    for (const auto& [second, count] : ticker.hits) {
        ASSERT_EQ(count, 1) << second;
    }
}

TEST(SecondPhase, blockedForSeconds_leavesThoseOut_andGoesOnInPhase)
{
    SimulatedTicker ticker(kStart);
    ticker.Wait(1.0);
    ticker.Wait(3'400.0);
    ticker.hits.clear();
    ticker.Wait(1.0, 5);
    EXPECT_TRUE(EachSecondOnce(ticker.hits));
    EXPECT_LE(ticker.latest, 3);
}

TEST(SecondPhase, millisecondsToNext_areOneToAThousand)
{
    const SecondPhase phase;
    const auto at = [](int milliseconds) {
        return QDateTime(QDate(2026, 3, 20), QTime(1, 2, 3, milliseconds), Qt::UTC);
    };
    EXPECT_EQ(phase.MillisecondsToNext(at(0)), 1000);
    EXPECT_EQ(phase.MillisecondsToNext(at(1)), 999);
    EXPECT_EQ(phase.MillisecondsToNext(at(999)), 1);
}

TEST(SecondPhase, hourThatComesTwice_hitsEachOfItsSeconds)
{
    // The wall clock of Chicago goes back from 02:00 to 01:00 at 07:00 UTC.
    const QTimeZone chicago("America/Chicago");
    const QDateTime start = QDateTime(QDate(2026, 11, 1), QTime(6, 59, 57), Qt::UTC).toTimeZone(chicago);
    SecondPhase phase(start);
    for (int i = 1; i < 10; ++i) {
        EXPECT_TRUE(phase.Enter(start.addSecs(i))) << i;
        EXPECT_FALSE(phase.Enter(start.addSecs(i).addMSecs(500))) << i;
    }
}

} // namespace
