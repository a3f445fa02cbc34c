// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/SettingsFile.h"
#include "service/StartUpProgram.h"

#include <gtest/gtest.h>

namespace {

const QString kPrayer = QStringLiteral("prayerCall.pl");
const QString kAd = QStringLiteral("getAd.pl");

// When the running program requests an advertisement.
class AdScheduleTest : public testing::Test
{
protected:
    AdScheduleTest()
    {
        // No popups, which would delay the next alarm.
        WriteSettings(
            SettingsText().replace(QStringLiteral("popup=\"true\""), QStringLiteral("popup=\"false\"")));
        platform.http.reachable = true;
    }

    void Start() { m_window = &program.Start(); }
    [[nodiscard]] FrmMain& Window() const { return *m_window; }
    void WaitTime(const QByteArray& minutes)
    {
        platform.http.replies[kAd] = "<root ad_url='PGI+YWQ8L2I+' wait_time='" + minutes + "'/>";
    }
    /// Seconds at which no prayer is due.
    void Tick(int times)
    {
        platform.clock.SetTime(9, 30, 15);
        for (int i = 0; i < times; ++i) {
            platform.timers.Ticker()->Fire();
        }
    }
    void TickAt(int minute, int second)
    {
        platform.clock.SetTime(9, minute, second);
        platform.timers.Ticker()->Fire();
    }
    /// The refresh of each minute is due in second 58, and is put off.
    void StartAndPostpone()
    {
        WaitTime("1");
        Start();
        Tick(59);
        Asked();
        TickAt(30, 58);
        ASSERT_EQ(Asked(), QStringList());
    }
    /// A second at which a prayer is due; it counts like any other.
    void TickAtDuhr()
    {
        platform.clock.SetTime(12, 30, 0);
        platform.timers.Ticker()->Fire();
    }
    /// The scripts requested since the last call.
    QStringList Asked()
    {
        QStringList scripts;
        for (const QString& request : platform.http.requests) {
            scripts << request.section(u'/', -1).section(u'?', 0, 0);
        }
        platform.http.requests.clear();
        return scripts;
    }

    FakePlatform platform;
    Program program{platform.interfaces};

private:
    FrmMain* m_window = nullptr;
};

TEST_F(AdScheduleTest, tick_whenTheCountEqualsAdTimer_refreshesAndBeginsAnew)
{
    WaitTime("1");
    Start();
    EXPECT_EQ(Asked().count(kAd), 1);
    for (int round = 0; round < 2; ++round) {
        Tick(59);
        EXPECT_EQ(Asked(), QStringList());
        Tick(1);
        EXPECT_EQ(Asked(), QStringList(kAd));
    }
}

TEST_F(AdScheduleTest, adTimerZero_refreshesNoMore)
{
    WaitTime("0");
    Start();
    Asked();
    Tick(2000);
    EXPECT_EQ(Asked(), QStringList());
}

TEST_F(AdScheduleTest, alarm_refreshesAlsoWithoutAConnection)
{
    WaitTime("10");
    platform.http.reachable = false;
    Start();
    EXPECT_EQ(Asked(), QStringList());
    ASSERT_FALSE(Window().Variables().Connected);
    platform.http.reachable = true;
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd}));
    EXPECT_TRUE(Window().Variables().Connected);
    EXPECT_EQ(program.Strip(), QStringLiteral("ad"));
}

TEST_F(AdScheduleTest, alarm_leavesTheCountAlone)
{
    WaitTime("1");
    Start();
    Asked();
    Tick(29);
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd}));
    Tick(29);
    EXPECT_EQ(Asked(), QStringList());
    Tick(1);
    EXPECT_EQ(Asked(), QStringList(kAd)) << "60 seconds after the start, not after the alarm";
}

// Intended: the count is compared by equality. Above AdTimer it only grows, until an alarm brings a larger
// AdTimer or the program is restarted.
TEST_F(AdScheduleTest, adTimerThatFallsBelowTheCount_stopsTheTicksUntilAnAlarmRaisesIt)
{
    WaitTime("10");
    Start();
    Tick(119);
    Asked();
    WaitTime("1");
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd}));
    EXPECT_EQ(Window().Variables().AdTimer, 60.0F);
    Tick(79);
    EXPECT_EQ(Asked(), QStringList());
    WaitTime("5");
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd}));
    Tick(99);
    EXPECT_EQ(Asked(), QStringList());
    Tick(1);
    EXPECT_EQ(Asked(), QStringList(kAd)) << "at second 300";
    Tick(600);
    EXPECT_EQ(Asked().size(), 2);
}

TEST_F(AdScheduleTest, tick_whoseProbeCouldReachSecondZero_leavesTheRefreshToSecondOne)
{
    WaitTime("1");
    Start();
    for (const int due : {0, 1, 56, 57, 58, 59}) {
        SCOPED_TRACE(due);
        Tick(59);
        Asked();
        if (due > 56) {
            for (int second = due; second < 60; ++second) {
                TickAt(30, second);
            }
            TickAt(31, 0);
            EXPECT_EQ(Asked(), QStringList());
        }
        TickAt(31, due > 56 ? 1 : due);
        EXPECT_EQ(Asked(), QStringList(kAd)) << "and the count begins anew";
    }
}

TEST_F(AdScheduleTest, tick_duringTheRequestOfAnAlarm_leavesTheRefreshToALaterTick)
{
    WaitTime("1");
    Start();
    Tick(58);
    Asked();
    QStringList askedInTheWait;
    platform.http.whileWaiting = [&] {
        platform.clock.SetTime(12, 30, 1);
        platform.timers.Ticker()->Fire();
        askedInTheWait = Asked();
    };
    TickAtDuhr();
    EXPECT_EQ(askedInTheWait, QStringList(kPrayer)) << "the strip would delay the sound";
    EXPECT_EQ(Asked(), QStringList(kAd)) << "the alarm's own";
    TickAt(31, 4);
    EXPECT_EQ(Asked(), QStringList(kAd)) << "the one that was due";
}

TEST_F(AdScheduleTest, postponedRefresh_secondOneLost_isMadeAtTheNextTick)
{
    StartAndPostpone();
    TickAt(31, 7);
    EXPECT_EQ(Asked(), QStringList(kAd));
    Tick(59);
    EXPECT_EQ(Asked(), QStringList());
}

TEST_F(AdScheduleTest, postponedRefresh_clockSetBack_isMadeAtTheNextTickFarFromSecondZero)
{
    StartAndPostpone();
    TickAt(12, 57);
    EXPECT_EQ(Asked(), QStringList());
    TickAt(12, 30);
    EXPECT_EQ(Asked(), QStringList(kAd));
}

TEST_F(AdScheduleTest, postponedRefresh_alarmChangesAdTimer_isMade)
{
    StartAndPostpone();
    WaitTime("0");
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd})) << "the alarm's own";
    TickAt(31, 1);
    EXPECT_EQ(Asked(), QStringList(kAd));
    Tick(600);
    EXPECT_EQ(Asked(), QStringList());
}

TEST_F(AdScheduleTest, postponedRefresh_ticksDuringItsRequest_startNoOther)
{
    StartAndPostpone();
    platform.http.whileWaiting = [this] {
        TickAt(31, 2);
        TickAt(31, 3);
    };
    TickAt(31, 1);
    EXPECT_EQ(Asked(), QStringList(kAd));
    Tick(59);
    EXPECT_EQ(Asked(), QStringList());
    Tick(1);
    EXPECT_EQ(Asked(), QStringList(kAd)) << "counted from the end of the request";
}

TEST_F(AdScheduleTest, tick_requestsAnAdAlsoWithoutAConnection)
{
    WaitTime("10");
    platform.http.reachable = false;
    Start();
    platform.http.reachable = true;
    Tick(599);
    EXPECT_EQ(Asked(), QStringList());
    EXPECT_FALSE(Window().Variables().Connected);
    Tick(1);
    EXPECT_EQ(Asked(), QStringList(kAd));
    EXPECT_TRUE(Window().Variables().Connected);
}

TEST_F(AdScheduleTest, start_requestsAnAdOnlyWithAConnection)
{
    WaitTime("10");
    // The network becomes reachable between the probe of the start and that of the refresh.
    platform.http.probeAnswers = {false, true};
    Start();
    EXPECT_EQ(Asked(), QStringList());
    EXPECT_EQ(program.Strip(), QStringLiteral("Dusk Beacon"));
    EXPECT_FALSE(Window().Variables().Connected);
    EXPECT_EQ(platform.http.probes.size(), 2) << "no probe without a version check";
}

} // namespace
