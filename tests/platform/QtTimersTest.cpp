// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtClock.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

// The seconds in which a ticker fired, and the latest millisecond of a second.
struct Ticks
{
    explicit Ticks(Timer& ticker, const Clock& clock)
    {
        ticker.SetHandler([this, &clock] {
            const QDateTime now = clock.Now();
            seconds.push_back(now.toSecsSinceEpoch());
            latest = std::max(latest, now.time().msec());
        });
    }

    std::vector<qint64> seconds;
    int latest = 0;
};

testing::AssertionResult EachSecondOnce(const std::vector<qint64>& seconds)
{
    for (std::size_t i = 1; i < seconds.size(); ++i) {
        if (seconds[i] != seconds[i - 1] + 1) {
            return testing::AssertionFailure() << "second " << seconds[i] << " came after " << seconds[i - 1];
        }
    }
    return testing::AssertionSuccess();
}

TEST(QtTimers, secondTicker_firesInEachSecond_untilDisabled)
{
    const QtClock clock;
    QtTimers timers(clock);
    const std::unique_ptr<Timer> ticker = timers.CreateSecondTicker();
    Ticks ticks(*ticker, clock);
    EXPECT_FALSE(ticker->IsEnabled());
    ticker->SetEnabled(true);
    ticker->SetEnabled(true);
    EXPECT_TRUE(ticker->IsEnabled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return ticks.seconds.size() >= 3; }, 20'000));
    EXPECT_TRUE(EachSecondOnce(ticks.seconds));
    ticker->SetEnabled(false);
    EXPECT_FALSE(ticker->IsEnabled());
    const std::size_t count = ticks.seconds.size();
    const qint64 second = clock.Now().toSecsSinceEpoch();
    ASSERT_TRUE(QTest::qWaitFor([&] { return clock.Now().toSecsSinceEpoch() > second + 1; }, 20'000));
    EXPECT_EQ(ticks.seconds.size(), count);
}

TEST(QtTimers, secondTicker_handlerThatServesEvents_missesNoSecond)
{
    const QtClock clock;
    QtTimers timers(clock);
    const std::unique_ptr<Timer> ticker = timers.CreateSecondTicker();
    std::vector<qint64> seconds;
    bool isWaiting = false;
    ticker->SetHandler([&] {
        seconds.push_back(clock.Now().toSecsSinceEpoch());
        if (!isWaiting) {
            // As a handler that waits for the network: later ticks are nested in this one.
            isWaiting = true;
            EXPECT_TRUE(QTest::qWaitFor([&] { return seconds.size() >= 4; }, 20'000));
        }
    });
    ticker->SetEnabled(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return seconds.size() >= 5; }, 20'000));
    EXPECT_TRUE(EachSecondOnce(seconds));
}

TEST(QtTimers, plainTimer_firesAgainAndAgain_untilDisabled)
{
    const QtClock clock;
    QtTimers timers(clock);
    const std::unique_ptr<Timer> timer = timers.CreateTimer();
    int calls = 0;
    timer->SetHandler([&] {
        if (++calls == 5) {
            timer->SetEnabled(false);
        }
    });
    timer->SetInterval(1);
    EXPECT_EQ(calls, 0) << "nothing fires before it is enabled";
    timer->SetEnabled(true);
    EXPECT_TRUE(timer->IsEnabled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !timer->IsEnabled(); }, 20'000));
    EXPECT_EQ(calls, 5);
}

// Two minutes of the real ticker by the wall clock, with busy cores and an event loop that is blocked again
// and again.
TEST(QtTimersUnderLoad, secondTicker_twoMinutes_hitEachSecondOnce)
{
    std::atomic<bool> isOver = false;
    std::vector<std::thread> load;
    for (unsigned int i = 0; i < 2 * std::max(2U, std::thread::hardware_concurrency()); ++i) {
        load.emplace_back([&isOver] {
            volatile double sum = 0.0;
            while (!isOver) {
                sum = sum + 1.0;
            }
        });
    }
    const QtClock clock;
    QtTimers timers(clock);
    const std::unique_ptr<Timer> ticker = timers.CreateSecondTicker();
    Ticks ticks(*ticker, clock);
    const std::unique_ptr<Timer> hold = timers.CreateTimer();
    hold->SetInterval(7);
    hold->SetHandler([] {
        QElapsedTimer watch;
        watch.start();
        while (watch.elapsed() < 30) {
        }
    });
    hold->SetEnabled(true);
    const qint64 start = clock.Now().toSecsSinceEpoch();
    ticker->SetEnabled(true);
    const bool ran = QTest::qWaitFor([&] { return clock.Now().toSecsSinceEpoch() >= start + 122; }, 180'000);
    isOver = true;
    for (std::thread& thread : load) {
        thread.join();
    }
    ASSERT_TRUE(ran);
    std::printf("%zu ticks, the latest %d ms into its second\n", ticks.seconds.size(), ticks.latest);
    EXPECT_TRUE(EachSecondOnce(ticks.seconds));
    EXPECT_GE(ticks.seconds.size(), 121U);
}

} // namespace
