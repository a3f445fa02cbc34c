// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PTimer.h"

#include "fakes/FakeCalculation.h"
#include "fakes/FakePlatform.h"
#include "platform/Clock.h"

#include <gtest/gtest.h>

#include <new>

namespace {

/// A clock that moves on by a day, a month and a year with each reading.
class HastyClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override
    {
        const QDateTime now = m_next;
        m_next = m_next.addYears(1).addMonths(1).addDays(1);
        return now;
    }

private:
    mutable QDateTime m_next{QDate(2026, 3, 15), QTime(12, 0), Qt::UTC};
};

class PTimerTest : public testing::Test
{
protected:
    PTimerTest()
    {
        timer.events.Tick = [this] { events << QStringLiteral("Tick"); };
        timer.events.Alarm = [this](std::int16_t id) { events << QStringLiteral("Alarm %1").arg(id); };
        timer.events.AdvAlarm = [this](std::int16_t id) { events << QStringLiteral("AdvAlarm %1").arg(id); };
        timer.events.Midnight = [this] { events << QStringLiteral("Midnight"); };
        timer.events.Started = [this] { events << QStringLiteral("Started"); };
        timer.events.Stopped = [this] { events << QStringLiteral("Stopped"); };
    }

    void Start(std::int16_t useAdvWarn = 0, std::int16_t advWarn = 10)
    {
        timer.SetupPTimer(4112, -8763, -6, 0, -1500, -1800, useAdvWarn, advWarn, -1);
        timer.StartTimer();
        events.clear();
    }

    /// The first call of the next set-up.
    QString ParamsOf(std::int16_t zone, std::int16_t daylightSaving, std::int16_t minutes = 0)
    {
        calculation.calls.clear();
        timer.SetupPTimer(0, 0, zone, daylightSaving, -1500, -1500, 0, 0, -1, minutes);
        return calculation.calls.front();
    }
    QString TickAt(int hour, int minute, int second = 0)
    {
        events.clear();
        platform.clock.SetTime(hour, minute, second);
        platform.timers.Ticker()->Fire();
        return events.join(u',');
    }

    FakePlatform platform;
    FakeCalculation calculation;
    PTimer timer{platform.interfaces, calculation};
    QStringList events;
};

TEST_F(PTimerTest, creation_leavesEverythingAtRest)
{
    EXPECT_EQ(timer.GetStatus(), -1);
    EXPECT_EQ(timer.GetLat(), 0);
    EXPECT_EQ(timer.GetLng(), 0);
    EXPECT_EQ(timer.GetTimeZone(), 0);
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        EXPECT_EQ(timer.GetPrayerTime(slot), 0) << slot;
    }
    EXPECT_FALSE(platform.timers.Ticker()->IsEnabled());
    EXPECT_EQ(platform.timers.Ticker()->intervalMilliseconds, 1000);
}

TEST_F(PTimerTest, setup_handsEverythingToTheCalculationInOrder)
{
    timer.SetupPTimer(4112, -8763, -6, -1, -1500, -1800, 0, 10, -1);
    QStringList expected{QStringLiteral("SetHorParams 4112 -8763 -300 20 3 2026"),
                         QStringLiteral("SetHorTemkin 0 0 0 0 0 0 0 0 0 0"),
                         QStringLiteral("SetHorAngle -1500 500 500 -1800")};
    for (int slot = 1; slot <= 10; ++slot) {
        expected << QStringLiteral("Horarium %1").arg(slot);
    }
    EXPECT_EQ(calculation.calls, expected);
    EXPECT_EQ(timer.GetStatus(), 0);
}

TEST_F(PTimerTest, setup_readsDayMonthAndYearOneByOne)
{
    HastyClock clock;
    Platform interfaces{clock,         platform.timers, platform.files,   platform.http,   platform.player,
                        platform.tray, platform.boxes,  platform.browser, platform.region, platform.process};
    PTimer hasty(interfaces, calculation);
    hasty.SetupPTimer(1, 2, 3, 0, 4, 5, 0, 0, -1);
    EXPECT_EQ(calculation.calls.front(), QStringLiteral("SetHorParams 1 2 180 15 4 2028"));
}

TEST_F(PTimerTest, setup_onlyMinusOneIsTrue)
{
    timer.SetupPTimer(1, 2, 3, 1, 4, 5, 1, 0, 1);
    EXPECT_TRUE(calculation.calls.isEmpty()) << "1 must not ask for a recalculation";
    timer.SetupPTimer(1, 2, 3, 1, 4, 5, 1, 0, -1);
    EXPECT_EQ(calculation.calls.front(), QStringLiteral("SetHorParams 1 2 180 20 3 2026")) << "no hour for 1";
    timer.StartTimer();
    EXPECT_EQ(TickAt(5, 0), QStringLiteral("Tick,Alarm 1")) << "no warning for 1";
}

TEST_F(PTimerTest, startAndStop_setStatusAndRaiseEvents)
{
    timer.SetupPTimer(1, 2, 3, 0, 4, 5, 0, 0, 0);
    EXPECT_EQ(timer.GetStatus(), 0);
    timer.events.Started = [this] {
        events << QStringLiteral("Started at %1").arg(timer.GetStatus());
        EXPECT_TRUE(platform.timers.Ticker()->IsEnabled());
    };
    timer.StartTimer();
    timer.StartTimer();
    EXPECT_EQ(timer.GetStatus(), 1);
    timer.StopTimer();
    EXPECT_EQ(timer.GetStatus(), 0);
    EXPECT_FALSE(platform.timers.Ticker()->IsEnabled());
    EXPECT_EQ(events.join(u','), u"Started at 0,Started at 1,Stopped");
}

TEST_F(PTimerTest, setup_whileItRuns_leavesItRunning_withStatusZero)
{
    Start();
    timer.SetupPTimer(1, 2, 3, 0, 4, 5, 0, 0, -1);
    EXPECT_EQ(timer.GetStatus(), 0);
    EXPECT_TRUE(platform.timers.Ticker()->IsEnabled());
    EXPECT_TRUE(events.isEmpty()) << "nothing has stopped";
    EXPECT_EQ(TickAt(18, 42), QStringLiteral("Tick,Alarm 9"));
}

TEST_F(PTimerTest, getters_returnTheStoredValues)
{
    timer.SetupPTimer(4112, -8763, -6, -1, -1500, -1800, 0, 10, 0);
    EXPECT_EQ(timer.GetLat(), 4112);
    EXPECT_EQ(timer.GetLng(), -8763);
    EXPECT_EQ(timer.GetTimeZone(), -6);
    EXPECT_EQ(timer.GetTwighlightAngle1(), -1500);
    EXPECT_EQ(timer.GetTwighlightAngle2(), -1800);
}

TEST_F(PTimerTest, getPrayerTime_outsideOneToTen_isZero)
{
    Start();
    EXPECT_EQ(timer.GetPrayerTime(0), 0);
    EXPECT_EQ(timer.GetPrayerTime(11), 0);
    EXPECT_EQ(timer.GetPrayerTime(-1), 0);
    EXPECT_EQ(timer.GetPrayerTime(10), 1215);
}

TEST_F(PTimerTest, readings_areThoseOfTheCalculation)
{
    platform.clock.SetTime(9, 30, 59);
    EXPECT_DOUBLE_EQ(timer.QDir(), 58.4);
    EXPECT_EQ(timer.GetSunElev(), 450);
    EXPECT_EQ(timer.GetMoonElev(), -100);
    EXPECT_EQ(calculation.calls,
              (QStringList{QStringLiteral("SunElev 570"), QStringLiteral("MoonElevation 570")}));
}

TEST_F(PTimerTest, getHDate_namesTheTwelveMonths_andNoOther)
{
    const QStringList names =
        QStringLiteral(
            "|Muharram ul Haram|Safar|Rabi-ul-Awwal|Rab-ul-Akhir|Jamadi-ul-Awwal|Jamadi-ul-Akhir|Rajab|"
            "Sha'aban|Ramadhan|Shawwal|Dhul Qadah|Dhul Hijja|")
            .split(u'|');
    for (std::int16_t month = 0; month <= 13; ++month) {
        calculation.hijriMonth = month;
        EXPECT_EQ(timer.GetHDate(), QStringLiteral("12 %1, 1429").arg(names.at(month)));
    }
}

TEST_F(PTimerTest, tick_raisesTheAlarmOfItsMinute_inSecondZero)
{
    calculation.slots_[5] = 1000;
    calculation.slots_[6] = 1000;
    Start();
    const struct
    {
        const char* name;
        QTime time;
        const char* events;
    } rows[] = {
        {"the second before", QTime(18, 41, 59), "Tick"},
        {"the second", QTime(18, 42), "Tick,Alarm 9"},
        {"the second again: alarms are not remembered", QTime(18, 42), "Tick,Alarm 9"},
        {"the second after", QTime(18, 42, 1), "Tick"},
        {"the next minute: a missed alarm is not repeated", QTime(18, 43), "Tick"},
        {"the last second of another slot", QTime(5, 0, 59), "Tick"},
        {"two slots: the lower number wins", QTime(16, 40), "Tick,Alarm 6"},
    };
    for (const auto& [name, time, raised] : rows) {
        EXPECT_EQ(TickAt(time.hour(), time.minute(), time.second()), QLatin1String(raised)) << name;
    }
}

TEST_F(PTimerTest, midnight_recalculatesAndRaisesNoAlarm)
{
    calculation.slots_[0] = 0;
    Start(-1, 0);
    calculation.calls.clear();
    EXPECT_EQ(TickAt(0, 0), QStringLiteral("Tick,Midnight"));
    EXPECT_EQ(calculation.calls.size(), 13);
}

TEST_F(PTimerTest, midnight_missed_keepsYesterday_untilTheNextSetup)
{
    Start();
    calculation.calls.clear();
    EXPECT_EQ(TickAt(0, 0, 30), QStringLiteral("Tick"));
    EXPECT_EQ(TickAt(0, 1), QStringLiteral("Tick"));
    EXPECT_TRUE(calculation.calls.isEmpty());
    Start();
    EXPECT_FALSE(calculation.calls.isEmpty());
}

TEST_F(PTimerTest, advanceWarning_comesItsMinutesBeforeOrAfterASlotOfTheDate)
{
    struct Row
    {
        const char* name;
        std::size_t slot;
        std::int16_t minuteOfSlot;
        std::int16_t advance;
        QTime time;
        const char* events;
    };
    for (const Row& row :
         {Row{"ahead", 10, 1435, 10, QTime(23, 45), "Tick,AdvAlarm 10"},
          Row{"not across midnight", 1, 5, 10, QTime(23, 55), "Tick"},
          Row{"its alarm comes all the same", 1, 5, 10, QTime(0, 5), "Tick,Alarm 1"},
          Row{"due at midnight", 1, 10, 10, QTime(0, 0), "Tick,Midnight"},
          Row{"as long as can be", 9, 1122, 32767, QTime(23, 59), "Tick"},
          Row{"of zero minutes, behind the alarm", 9, 1122, 0, QTime(18, 42), "Tick,Alarm 9,AdvAlarm 9"},
          Row{"negative, after the time", 9, 1122, -5, QTime(18, 47), "Tick,AdvAlarm 9"},
          Row{"negative, for the first minute", 1, 0, -5, QTime(0, 5), "Tick,AdvAlarm 1"},
          Row{"of another slot, behind the alarm", 10, 1132, 10, QTime(18, 42),
              "Tick,Alarm 9,AdvAlarm 10"}}) {
        const auto slots_ = calculation.slots_;
        calculation.slots_.at(row.slot - 1) = row.minuteOfSlot;
        Start(-1, row.advance);
        EXPECT_EQ(TickAt(row.time.hour(), row.time.minute()), QLatin1String(row.events)) << row.name;
        calculation.slots_ = slots_;
    }
    EXPECT_TRUE(platform.boxes.boxes.empty()) << "no overflow";
    EXPECT_TRUE(platform.timers.Ticker()->IsEnabled());
}

TEST_F(PTimerTest, errorInATick_stopsTheTickerAndShowsABox)
{
    Start();
    platform.boxes.whileOpen = [this] {
        EXPECT_FALSE(platform.timers.Ticker()->IsEnabled()) << "ticks would come while the box is open";
    };
    calculation.fails = true;
    TickAt(0, 0);
    EXPECT_EQ(timer.GetStatus(), 1) << "only StopTimer raises Stopped";
    EXPECT_EQ(TickAt(0, 1), QString()) << "no tick after the stop";
    timer.StartTimer();
    EXPECT_EQ(TickAt(0, 2), QStringLiteral("Tick"));
    timer.events.Alarm = [](std::int16_t) { throw std::bad_alloc(); };
    TickAt(18, 42);
    EXPECT_FALSE(platform.timers.Ticker()->IsEnabled()) << "after any exception";
    const auto box =
        FakeMessageBoxes::Message(QStringLiteral("There has been an error. Please restart Dusk Beacon"));
    EXPECT_EQ(platform.boxes.boxes, (std::vector{box, box}));
}

TEST_F(PTimerTest, offset_isThatOfTheSettings_alsoInSummer)
{
    EXPECT_EQ(ParamsOf(6, 0, -30), u"SetHorParams 0 0 330 20 3 2026");
    EXPECT_EQ(timer.GetTimeZone(), 6) << "the minutes leave the zone";
    EXPECT_EQ(ParamsOf(-4, -1), u"SetHorParams 0 0 -180 20 3 2026");
    EXPECT_EQ(ParamsOf(-4, -1, 30), u"SetHorParams 0 0 -150 20 3 2026");
    calculation.calls.clear();
    timer.StartTimer();
    platform.clock.Set(QDate(2026, 7, 1), QTime(0, 0));
    platform.timers.Ticker()->Fire();
    EXPECT_EQ(calculation.calls.front(), u"SetHorParams 0 0 -150 1 7 2026");
}

TEST_F(PTimerTest, tickAtSecondZero_readsTheClockOnce)
{
    Start();
    // A Tick handler that takes long must not move the minute that is compared.
    timer.events.Tick = [this] { platform.clock.SetTime(18, 43, 20); };
    platform.clock.SetTime(18, 42, 0);
    platform.timers.Ticker()->Fire();
    EXPECT_EQ(events, QStringList{QStringLiteral("Alarm 9")});
}

TEST_F(PTimerTest, slotsOutsideTheDay_neverMatch)
{
    calculation.slots_ = {-1, -1, -1, -1, -1, -1, -1, -1, 1440, 2000};
    for (const int advance : {10, -10, 600}) {
        Start(-1, static_cast<std::int16_t>(advance));
        for (int minute = 1; minute < 1440; ++minute) {
            ASSERT_EQ(TickAt(minute / 60, minute % 60), QStringLiteral("Tick"))
                << minute << " and " << advance;
        }
    }
}

TEST_F(PTimerTest, offsetOutOfRange_isAnOverflowOfTheCaller)
{
    EXPECT_THROW(timer.SetupPTimer(0, 0, 547, 0, 0, 0, 0, 0, -1), RuntimeError);
    EXPECT_THROW(timer.SetupPTimer(0, 0, 546, -1, 0, 0, 0, 0, -1), RuntimeError);
    EXPECT_THROW(timer.SetupPTimer(0, 0, 546, 0, 0, 0, 0, 0, -1, 30), RuntimeError);
    EXPECT_EQ(timer.GetTimeZone(), 546) << "stored unchanged";
}

} // namespace
