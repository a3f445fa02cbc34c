// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstTouchFixture.h"
#include "forms/LinkLabel.h"

#include <QAccessible>
#include <QFontMetrics>

namespace {

class PrayerDisplayTest : public FirstTouchFixture
{
protected:
    QString CountDownAt(int hour, int minute)
    {
        Window();
        TickAt(hour, minute, 30);
        return Text("LblCountDown");
    }
    void Use(const char* before, const char* after) { WriteSettings(Changed(before, after)); }
};

TEST_F(PrayerDisplayTest, settingsBlock_showsWhatTheFileHolds)
{
    Window();
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Chicago, Illinois"));
    EXPECT_EQ(Text("LblTimeZ"), QStringLiteral("Time Zone: -6"));
    EXPECT_EQ(Text("LblCaclMeth"), QStringLiteral("Calculation Method: ISNA"));
    EXPECT_EQ(Text("LblAsrMeth"), QStringLiteral("Asr Method: shafi"));
    EXPECT_EQ(Text("LblDLSavings"), QStringLiteral("Day Light Savings is: Off"));
    EXPECT_EQ(Text("LblAdvWarning"), QStringLiteral("Advanced Warning: Off"));
}

TEST_F(PrayerDisplayTest, settingsBlock_otherValues)
{
    WriteSettings(
        Changed("useDLS=\"false\"", "useDLS=\"true\"")
            .replace(QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\""))
            .replace(QStringLiteral("asrMethode=\"shafi\""), QStringLiteral("asrMethode=\"hanafi\""))
            .replace(QStringLiteral("time_zone2=\"-6\""), QStringLiteral("time_zone2=\"5.5\"")));
    Window();
    EXPECT_EQ(Text("LblTimeZ"), QStringLiteral("Time Zone: 6")) << "without the daylight-saving hour";
    EXPECT_EQ(Text("LblAsrMeth"), QStringLiteral("Asr Method: hanafi"));
    EXPECT_EQ(Text("LblDLSavings"), QStringLiteral("Day Light Savings is: On"));
    EXPECT_EQ(Text("LblAdvWarning"), QStringLiteral("Advanced Warning: On, 10 Minutes"));
}

TEST_F(PrayerDisplayTest, offsetToTheMinute_isTheTipOfTheZone)
{
    const struct
    {
        const char* place;
        const char* label;
        const char* tip;
    } rows[] = {
        {"time_zone2=\"5.5\" utc_minutes=\"330\"", "Time Zone: 6", "UTC+5:30"},
        {"time_zone2=\"-3.5\" utc_minutes=\"-210\"", "Time Zone: -4", "UTC-3:30"},
        {"time_zone2=\"0\" utc_minutes=\"-5\"", "Time Zone: 0", "UTC-0:05"},
        {"time_zone2=\"3\" utc_minutes=\"180\"", "Time Zone: 3", "UTC+3:00"},
        {"time_zone2=\"5.5\" utc_minutes=\"90\"", "Time Zone: 6", ""},
        {"time_zone2=\"5.5\"", "Time Zone: 6", ""},
    };
    for (const auto& row : rows) {
        WriteSettings(Changed("time_zone2=\"-6\"", row.place)
                          .replace(QStringLiteral("useDLS=\"false\""), QStringLiteral("useDLS=\"true\"")));
        EXPECT_EQ(Window().UpdateEverything(), 1);
        EXPECT_EQ(Text("LblTimeZ"), QLatin1String(row.label));
        auto* const label = Window().findChild<QWidget*>(QStringLiteral("LblTimeZ"));
        EXPECT_EQ(label->toolTip(), QLatin1String(row.tip)) << row.place;
        EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Description),
                  QLatin1String(row.tip))
            << "a screen reader says it too";
    }
}

TEST_F(PrayerDisplayTest, markupInAPlace_isShownAsItIs)
{
    Use("city=\"Chicago\"", "city=\"&lt;b&gt;A &amp; B\"");
    Window();
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("<b>A & B, Illinois"));
    EXPECT_EQ(Window().findChild<QLabel*>(QStringLiteral("LblLocation"))->textFormat(), Qt::PlainText);
}

TEST_F(PrayerDisplayTest, sixTimes_bothForms)
{
    EXPECT_EQ((Window(), Times()),
              (QStringList{QStringLiteral("5:00"), QStringLiteral("6:30"), QStringLiteral("12:30"),
                           QStringLiteral("15:45"), QStringLiteral("18:42"), QStringLiteral("20:15")}));
    EXPECT_EQ(Text("LblHajri"), QStringLiteral("12 Rajab, 1429"));
    Use("hourmode=\"24\"", "hourmode=\"12\"");
    Window().UpdateEverything();
    EXPECT_EQ(Times(),
              (QStringList{QStringLiteral("5:00 AM"), QStringLiteral("6:30 AM"), QStringLiteral("12:30 AM"),
                           QStringLiteral("3:45 PM"), QStringLiteral("6:42 PM"), QStringLiteral("8:15 PM")}));
}

TEST_F(PrayerDisplayTest, asr_shafiShowsSlot6_anythingElseSlot7)
{
    Window();
    EXPECT_EQ(Text("LblAsrTime"), QStringLiteral("15:45"));
    for (const char* method : {"asrMethode=\"hanafi\"", "asrMethode=\"Shafi\"", "asrMethode=\"\""}) {
        Use("asrMethode=\"shafi\"", method);
        Window().UpdateEverything();
        EXPECT_EQ(Text("LblAsrTime"), QStringLiteral("16:40")) << method;
    }
}

TEST_F(PrayerDisplayTest, emptyHourMode_timesIn12_countdownIn24)
{
    Use("hourmode=\"24\"", "hourmode=\"\"");
    EXPECT_EQ(CountDownAt(4, 0), QStringLiteral("1:00"));
    EXPECT_EQ(Text("LblIshaTime"), QStringLiteral("8:15 PM"));
}

TEST_F(PrayerDisplayTest, dateCaption_everyMonth)
{
    const QStringList months{
        QStringLiteral("January"), QStringLiteral("February"), QStringLiteral("March"),
        QStringLiteral("April"),   QStringLiteral("May"),      QStringLiteral("June"),
        QStringLiteral("July"),    QStringLiteral("August"),   QStringLiteral("September"),
        QStringLiteral("October"), QStringLiteral("November"), QStringLiteral("December")};
    for (int month = 1; month <= 12; ++month) {
        platform.clock.Set(QDate(2026, month, month), QTime(12, 0));
        Window().PopPrayerFrame();
        EXPECT_EQ(DateCaption(),
                  QStringLiteral("Date: %1 %2, 2026").arg(QString::number(month), months.at(month - 1)));
    }
}

TEST_F(PrayerDisplayTest, dateCaption_isAsOldAsItsLastCall)
{
    Window();
    platform.clock.Set(QDate(2026, 3, 21), QTime(0, 0, 30));
    platform.timers.Ticker()->Fire();
    EXPECT_EQ(DateCaption(), QStringLiteral("Date: 20 March, 2026")) << "the tick at 00:00:00 was lost";
}

struct CountDownRow
{
    const char* name;
    const char* hourMode;
    const char* asrMethod;
    int hour;
    int minute;
    const char* text;
};

class CountDownRows : public PrayerDisplayTest, public testing::WithParamInterface<CountDownRow>
{
};

TEST_P(CountDownRows, clock_countsDownToTheNext)
{
    const CountDownRow& row = GetParam();
    WriteSettings(SettingsText()
                      .replace(QStringLiteral("hourmode=\"24\""),
                               QStringLiteral("hourmode=\"%1\"").arg(QLatin1String(row.hourMode)))
                      .replace(QStringLiteral("asrMethode=\"shafi\""),
                               QStringLiteral("asrMethode=\"%1\"").arg(QLatin1String(row.asrMethod))));
    EXPECT_EQ(CountDownAt(row.hour, row.minute), QLatin1String(row.text));
}

// Fajr 5:00, Shuruq 6:30, Duhr 12:30, Asr 15:45 or 16:40, Maghrib 18:42, Isha 20:15.
INSTANTIATE_TEST_SUITE_P(
    UpdateCountDown, CountDownRows,
    testing::Values(CountDownRow{"midnight", "24", "shafi", 0, 0, "5:00"},
                    CountDownRow{"beforeFajr", "24", "shafi", 4, 59, "0:01"},
                    CountDownRow{"atFajr_shuruqIsNext", "24", "shafi", 5, 0, "1:30"},
                    CountDownRow{"atShuruq", "24", "shafi", 6, 30, "6:00"},
                    CountDownRow{"atDuhr_shafi", "24", "shafi", 12, 30, "3:15"},
                    CountDownRow{"atDuhr_hanafi", "24", "hanafi", 12, 30, "4:10"},
                    CountDownRow{"atDuhr_neither_skipsAsr", "24", "Shafi", 12, 30, "6:12"},
                    CountDownRow{"atAsr", "24", "shafi", 15, 45, "2:57"},
                    CountDownRow{"atMaghrib", "24", "shafi", 18, 42, "1:33"},
                    CountDownRow{"beforeIsha", "24", "shafi", 20, 14, "0:01"},
                    CountDownRow{"atIsha_isNegative", "24", "shafi", 20, 15, "-21:45"},
                    CountDownRow{"atIsha_isNegative_12", "12", "shafi", 20, 15, "-21:45 AM"},
                    CountDownRow{"afterIsha", "24", "shafi", 20, 16, "Done"},
                    CountDownRow{"lastMinute", "12", "shafi", 23, 59, "Done"},
                    CountDownRow{"fiveMinutes_12", "12", "shafi", 4, 55, "12:05 AM"},
                    CountDownRow{"threeHours_12", "12", "hanafi", 13, 33, "3:07 AM"},
                    CountDownRow{"otherWord_is24", "13", "shafi", 4, 55, "0:05"}),
    [](const testing::TestParamInfo<CountDownRow>& row) { return std::string(row.param.name); });

// At high latitudes an event may not come to pass, and one of the evening may fall behind midnight.
TEST_F(PrayerDisplayTest, absentIsha_isDoneAllDay_andReadsOneMinuteBeforeTheDay)
{
    calculation.slots_[9] = -1;
    for (const auto& [hour, minute] :
         {std::pair(0, 0), std::pair(4, 0), std::pair(12, 0), std::pair(23, 59)}) {
        EXPECT_EQ(CountDownAt(hour, minute), QStringLiteral("Done")) << hour;
    }
    EXPECT_EQ(Text("LblIshaTime"), QStringLiteral("-1:59"));
    Use("hourmode=\"24\"", "hourmode=\"12\"");
    Window().UpdateEverything();
    EXPECT_EQ(Text("LblIshaTime"), QStringLiteral("-1:59 AM"));
}

TEST_F(PrayerDisplayTest, ishaBehindMidnight_isDoneFromTheMinuteBehindIt)
{
    calculation.slots_[9] = 30;
    EXPECT_EQ(CountDownAt(0, 29), QStringLiteral("4:31")) << "the first of the list, not the least, is next";
    EXPECT_EQ(CountDownAt(0, 30), QStringLiteral("4:30"));
    EXPECT_EQ(CountDownAt(0, 31), QStringLiteral("Done"));
    EXPECT_EQ(CountDownAt(12, 0), QStringLiteral("Done"));
}

TEST_F(PrayerDisplayTest, absentFajr_isPassedOver)
{
    calculation.slots_[0] = -1;
    EXPECT_EQ(CountDownAt(0, 0), QStringLiteral("6:30"));
    EXPECT_EQ(Text("LblFarjTime"), QStringLiteral("-1:59"));
}

TEST_F(PrayerDisplayTest, thirteenHoursLeft_12_readsPM)
{
    calculation.slots_ = {1400, 1401, -1, -1, 1402, 1403, 1404, -1, 1405, 1406};
    Use("hourmode=\"24\"", "hourmode=\"12\"");
    EXPECT_EQ(CountDownAt(10, 0), QStringLiteral("1:20 PM"));
}

TEST_F(PrayerDisplayTest, countDown_changesOnEveryTick_notOnlyAtSecondZero)
{
    Window();
    TickAt(20, 16, 59);
    EXPECT_EQ(Text("LblCountDown"), QStringLiteral("Done"));
    TickAt(4, 0, 1);
    EXPECT_EQ(Text("LblCountDown"), QStringLiteral("1:00"));
}

TEST_F(PrayerDisplayTest, afterMidnight_doneIsGoneWithTheFirstTick)
{
    Window();
    TickAt(23, 59, 59);
    EXPECT_EQ(Text("LblCountDown"), QStringLiteral("Done"));
    TickAt(0, 0, 0);
    EXPECT_EQ(Text("LblCountDown"), QStringLiteral("5:00"));
}

TEST_F(PrayerDisplayTest, groups_standInTheirPlaces)
{
    const struct
    {
        const char* name;
        QRect place;
    } rows[] = {
        {"Picture2", {8, 0, 129, 97}},   {"Frame2", {144, 0, 449, 89}},  {"FrmOptions", {8, 128, 129, 85}},
        {"Frame6", {208, 96, 289, 169}}, {"Frame3", {8, 280, 113, 137}}, {"PrayerFrame", {128, 336, 466, 81}},
    };
    for (const auto& row : rows) {
        const auto* const group = Window().findChild<QWidget*>(QLatin1String(row.name));
        ASSERT_NE(group, nullptr) << row.name;
        EXPECT_EQ(group->geometry(), row.place) << row.name;
    }
    const auto at = [this](const char* name) {
        return Window().findChild<QWidget*>(QLatin1String(name))->pos();
    };
    EXPECT_EQ(at("Label3"), QPoint(8, 104));
    EXPECT_EQ(at("LblCountDown"), QPoint(104, 104));
    EXPECT_EQ(at("LblVolume").y(), 216);
    EXPECT_EQ(at("VolControl").y(), 232);
    EXPECT_EQ(at("LblStopLink").y(), 256);
    int left = 32;
    for (const char* prayer : {"Farj", "Shuruq", "Duhr", "Asr", "Maghrib", "Isha"}) {
        EXPECT_EQ(at(qPrintable(QStringLiteral("Lbl%1Link").arg(QLatin1String(prayer)))), QPoint(left, 40));
        EXPECT_EQ(at(qPrintable(QStringLiteral("Lbl%1Time").arg(QLatin1String(prayer)))), QPoint(left, 56));
        left += 72;
    }
}

TEST_F(PrayerDisplayTest, insideTheGroups_linesStandInTheirOrder)
{
    const struct
    {
        const char* group;
        std::vector<std::vector<const char*>> lines;
    } rows[] = {
        {"Frame2",
         {{"LblLocation"}, {"LblCaclMeth"}, {"LblAsrMeth", "LblDLSavings"}, {"LblTimeZ", "LblAdvWarning"}}},
        {"FrmOptions", {{"LblLocLink"}, {"LblAlertsLink"}, {"LblHelp"}, {"LblGetMoreLink"}}},
        {"Frame6", {{"VBSunAndMoon1"}, {"Label2"}}},
        {"PrayerFrame",
         {{"Label1", "LblHajri"},
          {"LblFarjLink", "LblShuruqLink", "LblDuhrLink", "LblAsrLink", "LblMaghribLink", "LblIshaLink"},
          {"LblFarjTime", "LblShuruqTime", "LblDuhrTime", "LblAsrTime", "LblMaghribTime", "LblIshaTime"}}},
    };
    for (const auto& row : rows) {
        const auto* const group = Window().findChild<QWidget*>(QLatin1String(row.group));
        int top = 0;
        for (const auto& line : row.lines) {
            int bottom = top;
            int left = 0;
            for (const char* name : line) {
                SCOPED_TRACE(name);
                const auto* const control = group->findChild<QWidget*>(QLatin1String(name));
                ASSERT_NE(control, nullptr);
                const QRect place = control->geometry();
                EXPECT_GE(place.left(), left) << "from left to right";
                EXPECT_GE(place.top(), top) << "below the line before";
                EXPECT_EQ(place.top(), group->findChild<QWidget*>(QLatin1String(line.front()))->y());
                EXPECT_TRUE(group->rect().contains(place));
                left = place.right() + 1;
                bottom = std::max(bottom, place.bottom() + 1);
            }
            top = bottom;
        }
    }
}

TEST_F(PrayerDisplayTest, longestTexts_fitTheirLabels)
{
    WriteSettings(
        Changed("method=\"ISNA\"", "method=\"Egyptian General Authority of Survey\"")
            .replace(QStringLiteral("hourmode=\"24\""), QStringLiteral("hourmode=\"12\""))
            .replace(QStringLiteral("useAdvWarn=\"false\""), QStringLiteral("useAdvWarn=\"true\""))
            .replace(QStringLiteral("asrMethode=\"shafi\""), QStringLiteral("asrMethode=\"hanafi\"")));
    calculation.hijriMonth = 5;
    CountDownAt(20, 15);
    int labels = 0;
    for (const QLabel* const label : Window().findChildren<QLabel*>()) {
        if (!label->isVisibleTo(&Window())) {
            continue;
        }
        ++labels;
        const QSize text = QFontMetrics(label->font()).size(0, label->text());
        EXPECT_LE(text.width(), label->width()) << label->objectName().toStdString();
        EXPECT_LE(text.height(), label->height()) << label->objectName().toStdString();
    }
    EXPECT_GE(labels, 20);
}

TEST_F(PrayerDisplayTest, links_areReadByTheirOwnText_notByTheFrames)
{
    InstallLinkAccessibility();
    const std::pair<const char*, QString> rows[] = {{"LblFarjLink", QStringLiteral("Fajr:")},
                                                    {"LblIshaLink", QStringLiteral("Isha:")},
                                                    {"LblAlertsLink", QStringLiteral("Alerts")}};
    for (const auto& [name, text] : rows) {
        auto* const link = Window().findChild<QWidget*>(QLatin1String(name));
        EXPECT_EQ(QAccessible::queryAccessibleInterface(link)->text(QAccessible::Name), text) << name;
    }
}

} // namespace
