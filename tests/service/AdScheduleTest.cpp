// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/SettingsFile.h"
#include "service/StartUpProgram.h"
#include "service/WebAd.h"

#include <gtest/gtest.h>

namespace {

const QString kPrayer = QStringLiteral("prayerCall.pl");
const QString kAd = QStringLiteral("getAd.pl");

// When the running program asks for an advertisement.
class AdScheduleTest : public testing::Test
{
protected:
    AdScheduleTest()
    {
        // No popups, which would hold up the next alarm.
        WriteSettings(
            SettingsText().replace(QStringLiteral("popup=\"true\""), QStringLiteral("popup=\"false\"")));
        platform.http.reachable = true;
    }

    void Start() { m_window = &m_program.Start(); }
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
    /// A second at which one is; counts like any other.
    void TickAtDuhr()
    {
        platform.clock.SetTime(12, 30, 0);
        platform.timers.Ticker()->Fire();
    }
    /// The scripts asked for since the last call.
    QStringList Asked()
    {
        QStringList scripts;
        for (const QString& request : platform.http.requests) {
            scripts << request.section(u'/', -1).section(u'?', 0, 0);
        }
        platform.http.requests.clear();
        return scripts;
    }
    [[nodiscard]] QString Shown() const
    {
        return m_window->findChild<WebAd*>(QStringLiteral("WebAd"))->toPlainText();
    }

    FakePlatform platform;

private:
    Program m_program{platform.doors};
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

TEST_F(AdScheduleTest, adTimerOfNothing_refreshesNoMore)
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
    ASSERT_FALSE(Window().Connected);
    platform.http.reachable = true;
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd}));
    EXPECT_TRUE(Window().Connected);
    EXPECT_EQ(Shown(), QStringLiteral("ad"));
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

// Wanted: the count is compared by equality, and only an alarm or a restart brings it back.
TEST_F(AdScheduleTest, adTimerThatFallsBelowTheCount_stopsTheTicksUntilAnAlarmRaisesIt)
{
    WaitTime("10");
    Start();
    Tick(119);
    Asked();
    WaitTime("1");
    TickAtDuhr();
    EXPECT_EQ(Asked(), (QStringList{kPrayer, kAd}));
    EXPECT_EQ(Window().AdTimer, 60.0F);
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

TEST_F(AdScheduleTest, tick_asksAlsoWithoutAConnection)
{
    WaitTime("10");
    platform.http.reachable = false;
    Start();
    platform.http.reachable = true;
    Tick(599);
    EXPECT_EQ(Asked(), QStringList());
    EXPECT_FALSE(Window().Connected);
    Tick(1);
    EXPECT_EQ(Asked(), QStringList(kAd));
    EXPECT_TRUE(Window().Connected);
}

TEST_F(AdScheduleTest, start_asksOnlyWithAConnection)
{
    WaitTime("10");
    // The network comes between the probe of the start and that of the refresh.
    platform.http.probeAnswers = {false, true};
    Start();
    EXPECT_EQ(Asked(), QStringList());
    EXPECT_EQ(Shown(), QStringLiteral("Dusk Beacon"));
    EXPECT_FALSE(Window().Connected);
    EXPECT_EQ(platform.http.probes.size(), 2) << "none for a version that nobody asks for";
}

} // namespace
