// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstTouchFixture.h"

#include <QAccessible>

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
};

TEST_F(PrayerDisplayTest, settingsBlock_showsWhatTheFileHolds)
{
    Window();
    EXPECT_EQ(SettingsBlock(), u"Chicago, Illinois|Time Zone: -6|Calculation Method: ISNA|Asr Method: shafi|"
                               u"Day Light Savings is: Off|Advanced Warning: Off");
    WriteSettings(SettingsWith(
        {{"useDLS", "true"}, {"useAdvWarn", "true"}, {"asrMethode", "hanafi"}, {"time_zone2", "5.5"}}));
    Window().UpdateEverything();
    EXPECT_EQ(SettingsBlock(), u"Chicago, Illinois|Time Zone: 6|Calculation Method: ISNA|Asr Method: hanafi|"
                               u"Day Light Savings is: On|Advanced Warning: On, 10 Minutes")
        << "the zone without the daylight-saving hour";
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
        auto& label = Find<QLabel>("LblTimeZ");
        EXPECT_EQ(label.toolTip(), QLatin1String(row.tip)) << row.place;
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Description),
                  QLatin1String(row.tip))
            << "a screen reader says it too";
    }
}

TEST_F(PrayerDisplayTest, markupInAPlace_isShownAsItIs)
{
    WriteSettings(SettingsWith({{"city", "&lt;b&gt;A &amp; B"}}));
    Window();
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("<b>A & B, Illinois"));
    EXPECT_EQ(Window().findChild<QLabel*>(QStringLiteral("LblLocation"))->textFormat(), Qt::PlainText);
}

TEST_F(PrayerDisplayTest, sixTimes_are24HoursByThatModeOnly)
{
    Window();
    EXPECT_EQ(Times(), u"5:00|6:30|12:30|15:45|18:42|20:15");
    EXPECT_EQ(Text("LblHajri"), u"12 Rajab, 1429");
    for (const char* mode : {"12", ""}) {
        WriteSettings(SettingsWith({{"hourmode", mode}}));
        Window().UpdateEverything();
        EXPECT_EQ(Times(), u"5:00 AM|6:30 AM|12:30 AM|3:45 PM|6:42 PM|8:15 PM") << mode;
    }
}

TEST_F(PrayerDisplayTest, asr_shafiShowsSlot6_anythingElseSlot7)
{
    Window();
    EXPECT_EQ(Text("LblAsrTime"), QStringLiteral("15:45"));
    for (const char* method : {"hanafi", "Shafi", ""}) {
        WriteSettings(SettingsWith({{"asrMethode", method}}));
        Window().UpdateEverything();
        EXPECT_EQ(Text("LblAsrTime"), QStringLiteral("16:40")) << method;
    }
}

TEST_F(PrayerDisplayTest, dateCaption_everyMonth)
{
    const QStringList months = QStringLiteral("January February March April May June July August September "
                                              "October November December")
                                   .split(u' ');
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
    EXPECT_EQ(DateCaption(), u"Date: 20 March, 2026") << "the tick at 00:00:00 was lost";
}

// Fajr 5:00, Shuruq 6:30, Duhr 12:30, Asr 15:45 or 16:40, Maghrib 18:42, Isha 20:15.
TEST_F(PrayerDisplayTest, countDown_runsToTheNextPrayer)
{
    const struct
    {
        const char* hourMode;
        const char* asrMethod;
        QTime time;
        const char16_t* text;
    } rows[] = {
        {"24", "shafi", QTime(0, 0), u"5:00"},
        {"24", "shafi", QTime(4, 59), u"0:01"},
        {"24", "shafi", QTime(5, 0), u"1:30"},
        {"24", "shafi", QTime(6, 30), u"6:00"},
        {"24", "shafi", QTime(12, 30), u"3:15"},
        {"24", "hanafi", QTime(12, 30), u"4:10"},
        // Neither Asr counts.
        {"24", "Shafi", QTime(12, 30), u"6:12"},
        {"24", "shafi", QTime(15, 45), u"2:57"},
        {"24", "shafi", QTime(18, 42), u"1:33"},
        {"24", "shafi", QTime(20, 14), u"0:01"},
        // Intended: in Isha's own minute there is no next prayer.
        {"24", "shafi", QTime(20, 15), u"-21:45"},
        {"12", "shafi", QTime(20, 15), u"-21:45 AM"},
        {"24", "shafi", QTime(20, 16), u"Done"},
        {"12", "shafi", QTime(23, 59), u"Done"},
        {"12", "shafi", QTime(4, 55), u"12:05 AM"},
        {"12", "hanafi", QTime(13, 33), u"3:07 AM"},
        {"13", "shafi", QTime(4, 55), u"0:05"},
        // Intended: the countdown has 24 hours where the times have 12.
        {"", "shafi", QTime(4, 0), u"1:00"},
    };
    for (const auto& [hourMode, asrMethod, time, text] : rows) {
        SCOPED_TRACE(std::string(hourMode) + ' ' + asrMethod + ' ' + time.toString().toStdString());
        WriteSettings(SettingsWith({{"hourmode", hourMode}, {"asrMethode", asrMethod}}));
        Window().UpdateEverything();
        EXPECT_EQ(CountDownAt(time.hour(), time.minute()), text);
    }
}

// At high latitudes an event may not occur, and one of the evening may occur after midnight.
TEST_F(PrayerDisplayTest, eventThatIsMissingOrAfterMidnight_countsAsItsMinute)
{
    const auto usual = calculation.slots_;
    const struct
    {
        std::size_t slot;
        std::int16_t minute;
        QTime time;
        const char16_t* text;
    } rows[] = {
        {10, -1, QTime(0, 0), u"Done"},
        {10, -1, QTime(4, 0), u"Done"},
        {10, -1, QTime(23, 59), u"Done"},
        // The first of the list is next, not the earliest.
        {10, 30, QTime(0, 29), u"4:31"},
        {10, 30, QTime(0, 30), u"4:30"},
        {10, 30, QTime(0, 31), u"Done"},
        {10, 30, QTime(12, 0), u"Done"},
        {1, -1, QTime(0, 0), u"6:30"},
    };
    for (const auto& [slot, minute, time, text] : rows) {
        calculation.slots_ = usual;
        calculation.slots_.at(slot - 1) = minute;
        Window().UpdateEverything();
        EXPECT_EQ(CountDownAt(time.hour(), time.minute()), text) << slot << " at " << minute;
    }
    EXPECT_EQ(Text("LblFarjTime"), u"-1:59");
    WriteSettings(SettingsWith({{"hourmode", "12"}}));
    Window().UpdateEverything();
    EXPECT_EQ(Text("LblFarjTime"), u"-1:59 AM");
}

TEST_F(PrayerDisplayTest, thirteenHoursLeft_12_readsPM)
{
    calculation.slots_ = {1400, 1401, -1, -1, 1402, 1403, 1404, -1, 1405, 1406};
    WriteSettings(SettingsWith({{"hourmode", "12"}}));
    EXPECT_EQ(CountDownAt(10, 0), u"1:20 PM");
}

TEST_F(PrayerDisplayTest, countDown_changesOnEveryTick_alsoAfterMidnight)
{
    Window();
    const std::pair<QTime, const char16_t*> ticks[] = {{QTime(20, 16, 59), u"Done"},
                                                       {QTime(4, 0, 1), u"1:00"},
                                                       {QTime(23, 59, 59), u"Done"},
                                                       {QTime(0, 0, 0), u"5:00"}};
    for (const auto& [time, text] : ticks) {
        TickAt(time.hour(), time.minute(), time.second());
        EXPECT_EQ(Text("LblCountDown"), text);
    }
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
        EXPECT_EQ(Find<QWidget>(row.name).geometry(), row.place) << row.name;
    }
    const auto at = [this](const char* name) { return Find<QWidget>(name).pos(); };
    EXPECT_EQ(at("Label3"), QPoint(8, 104));
    EXPECT_EQ(at("LblCountDown"), QPoint(104, 104));
    EXPECT_EQ(at("LblVolume"), QPoint(8, 216));
    EXPECT_EQ(Find<QWidget>("VolControl").geometry(), QRect(8, 232, 121, 17));
    EXPECT_EQ(at("LblStopLink"), QPoint(32, 256));
    EXPECT_EQ(Find<QWidget>("LblStopLink").width(), 65) << "as wide as designed, or as the text needs";
    EXPECT_EQ(Find<QWidget>("VBSunAndMoon1").geometry(), QRect(8, 16, 273, 129));
    EXPECT_GT(at("Label2").y(), Find<QWidget>("VBSunAndMoon1").geometry().bottom());
    for (std::int16_t tab = 3; tab <= 8; ++tab) {
        const Prayer& prayer = *PrayerOfTab(tab);
        const int left = 32 + 72 * (tab - 3);
        EXPECT_EQ(at(prayer.link.data()), QPoint(left, 40));
        EXPECT_EQ(at(prayer.time.data()), QPoint(left, 56));
    }
}

TEST_F(PrayerDisplayTest, insideTheGroups_linesStandInTheirOrder)
{
    const std::pair<const char*, const char16_t*> rows[] = {
        {"Frame2", u"LblLocation|LblCaclMeth|LblAsrMeth LblDLSavings|LblTimeZ LblAdvWarning"},
        {"FrmOptions", u"LblLocLink|LblAlertsLink|LblHelp|LblGetMoreLink"},
        {"Frame3", u"VBCompas1"},
        {"Frame6", u"VBSunAndMoon1|Label2"},
        {"PrayerFrame", u"Label1 LblHajri|"
                        u"LblFarjLink LblShuruqLink LblDuhrLink LblAsrLink LblMaghribLink LblIshaLink|"
                        u"LblFarjTime LblShuruqTime LblDuhrTime LblAsrTime LblMaghribTime LblIshaTime"}};
    for (const auto& [name, lines] : rows) {
        const auto& group = Find<QGroupBox>(name);
        std::map<int, std::map<int, const QWidget*>> byPlace;
        for (const auto* control : group.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            byPlace[control->y()][control->x()] = control;
            EXPECT_TRUE(group.rect().contains(control->geometry())) << qPrintable(control->objectName());
        }
        QStringList found;
        for (const auto& [top, line] : byPlace) {
            QStringList names;
            for (const auto& [left, control] : line) {
                names << control->objectName();
            }
            found << names.join(u' ');
        }
        EXPECT_EQ(found.join(u'|'), lines);
    }
}

} // namespace
