// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertsFixture.h"
#include "fakes/ErrorOf.h"

namespace {

const QString kPopupOnly =
    QStringLiteral(R"(enabled="true" popup="true" mobil="false" play="false" audioFile="")");
const QString kNothingOfIt =
    QStringLiteral(R"(enabled="true" popup="false" mobil="false" play="false" audioFile="")");

class AlertSecondsTest : public AlertsFixture
{
protected:
    AlertSecondsTest() { SetAllPrayers(kPopupOnly); }
};

TEST_F(AlertSecondsTest, advancePopup_goesAtItsTick)
{
    const struct
    {
        std::int16_t minutes;
        int ticks;
    } rows[] = {{1, 1}, {0, 1}, {-5, 1}, {2, 61}, {10, 541}, {30, 1741}, {547, 32761}};
    for (const auto& [minutes, ticks] : rows) {
        SCOPED_TRACE(minutes);
        main->Variables().Settings.AdvAlertMinutes = minutes;
        dispatch.AdvAlarm(9);
        ASSERT_TRUE(PassSeconds(ticks - 1));
        EXPECT_TRUE(PopupIsUp());
        ASSERT_TRUE(PassSeconds(1));
        EXPECT_FALSE(PopupIsUp());
        ExpectMainIsFree();
    }
}

TEST_F(AlertSecondsTest, advanceMinutesBeyondSixteenBits_leaveTheHandlerAsOverflow)
{
    for (const int minutes : {548, 600, 32767, -546, -32768}) {
        main->Variables().Settings.AdvAlertMinutes = static_cast<std::int16_t>(minutes);
        EXPECT_EQ(ErrorOf([this] { dispatch.AdvAlarm(9); }), ErrorNumber::kOverflow) << minutes;
        EXPECT_NE(Popup(), nullptr) << "the seconds are computed when the popup is loaded";
        EXPECT_FALSE(PopupIsUp());
        ExpectMainIsFree();
        forms.Unload(FrmPopup::kName);
    }
}

TEST_F(AlertSecondsTest, overflow_isAnErrorOfTheTick)
{
    main->Variables().Settings.AdvAlertMinutes = 548;
    SetUpTimer(-1);
    TickAt(9, 34); // 548 minutes before 18:42
    EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Message(QStringLiteral(
                                        "There has been an error. Please restart Dusk Beacon"))});
    EXPECT_FALSE(platform.timers.Ticker()->IsEnabled());
    EXPECT_FALSE(PopupIsUp());
}

TEST_F(AlertSecondsTest, advanceOfTen_closesBeforeThePrayersOwnAlarm)
{
    SetUpTimer(-1);
    TickAt(18, 32);
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Advanced Alert\r\nMaghrib 18:42"));
    ASSERT_TRUE(PassSeconds(541));
    TickAt(18, 42);
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nMaghrib: 18:42"));
    EXPECT_TRUE(PopupIsUp());
}

TEST_F(AlertSecondsTest, alarmPopup_blocksEveryAlertForItsSixHundredSeconds)
{
    calculation.slots_ = {300, 305, -1, -1, 310, 945, 1000, -1, 1122, 1215};
    SetUpTimer(0);
    TickAt(5, 0);
    ASSERT_TRUE(PassSeconds(300));
    TickAt(5, 5);
    ASSERT_TRUE(PassSeconds(299));
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nFajr: 5:00"));
    ASSERT_TRUE(PassSeconds(1));
    TickAt(5, 10);
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nDuhr: 5:10"));
    EXPECT_EQ(log.filter(QStringLiteral("request")).join(u'|'),
              u"request 1 Quite 0 5:00|request 3 Quite 0 5:10");
}

TEST_F(AlertSecondsTest, alarmAndWarningInOneTick_alarmsPopupDropsTheWarning_withoutAPopupBothRun)
{
    calculation.slots_[9] = 1132;
    SetUpTimer(-1);
    TickAt(18, 42);
    EXPECT_EQ(TextOf("Label1"), u"Prayer Time:\r\nMaghrib: 18:42");
    EXPECT_EQ(TakeLog().count(QStringLiteral("request")), 1);
    forms.Unload(FrmPopup::kName);
    SetPrayer(u"maghrib", kNothingOfIt);
    TickAt(18, 42);
    EXPECT_EQ(TakeLog(), u"no popup|request 5 Quite 0 18:42|ad");
    ASSERT_TRUE(PopupIsUp());
    EXPECT_EQ(TextOf("Label1"), u"Advanced Alert\r\nIsha 18:52");
    forms.Unload(FrmPopup::kName);
    // Its own warning, too, where it is due in the same minute.
    SetPrayer(u"maghrib", kPopupOnly);
    main->Variables().Settings.AdvAlertMinutes = 0;
    SetUpTimer(-1);
    TickAt(18, 42);
    EXPECT_EQ(TextOf("Label1"), u"Prayer Time:\r\nMaghrib: 18:42");
}

TEST_F(AlertSecondsTest, ignoredSlot_hidesThePrayerThatSharesItsMinute)
{
    calculation.slots_[3] = 750;
    SetUpTimer(0);
    TickAt(12, 30);
    EXPECT_FALSE(PopupIsUp());
    EXPECT_EQ(log, QStringList());
}

TEST_F(AlertSecondsTest, equalAsrMinutes_underHanafiFireNothing)
{
    calculation.slots_[5] = 1000;
    SetAsrMethod(QStringLiteral("hanafi"));
    SetUpTimer(0);
    TickAt(16, 40);
    EXPECT_FALSE(PopupIsUp());
    main->Variables().Settings.AsrMethod = QStringLiteral("shafi");
    TickAt(16, 40);
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nAsr (Shafi): 16:40"));
}

} // namespace
