// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstTouchFixture.h"

namespace {

class UpdateEverythingTest : public FirstTouchFixture
{
protected:
    // Loads the window, then reads @p text.
    int Update(const QString& text)
    {
        Window();
        calculation.calls.clear();
        WriteSettings(text);
        return Window().UpdateEverything();
    }
    [[nodiscard]] QString Params() const { return calculation.calls.value(0); }
};

TEST_F(UpdateEverythingTest, goodFile_feedsEverything_inItsOrder)
{
    EXPECT_EQ(Update(SettingsText()), 1);
    EXPECT_EQ(Params(), QStringLiteral("SetHorParams 4185 -8765 -360 20 3 2026"));
    EXPECT_EQ(calculation.calls.at(2), QStringLiteral("SetHorAngle -1500 500 500 -1500"));
    EXPECT_TRUE(IsRunning());
    EXPECT_EQ(DateCaption(), QStringLiteral("Date: 20 March, 2026"));
    const qsizetype sky = calculation.calls.indexOf(QStringLiteral("SunElev 570"));
    EXPECT_GT(sky, calculation.calls.indexOf(QStringLiteral("Horarium 10")));
}

TEST_F(UpdateEverythingTest, skyComesBeforeDateAndTimes)
{
    calculation.failsInTheSky = true;
    Window();
    EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Fatal(6)});
    EXPECT_TRUE(IsRunning()) << "the scheduler had been started";
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Chicago, Illinois")) << "the settings block comes first";
    EXPECT_EQ(Text("LblAngle"), u"Angle: 58.4") << "then the compass";
    EXPECT_EQ(DateCaption(), QStringLiteral("Date:")) << "date and times come last";
}

TEST_F(UpdateEverythingTest, value_reachesTheCalculation)
{
    const struct
    {
        const char* attribute;
        const char* value;
        const char16_t* call;
    } rows[] = {
        {"latitude_final", "41.12", u"SetHorParams 4112 -8765 -360 20 3 2026"},
        // Rounded down, also where the product of doubles is a little below.
        {"latitude_final", "-33.8651", u"SetHorParams -3387 -8765 -360 20 3 2026"},
        {"latitude_final", "36.73", u"SetHorParams 3672 -8765 -360 20 3 2026"},
        {"time_zone2", "5.5", u"SetHorParams 4185 -8765 360 20 3 2026"},
        {"useDLS", "true", u"SetHorParams 4185 -8765 -300 20 3 2026"},
        {"Current", "Makkah", u"SetHorParams 2142 3983 180 20 3 2026"},
        {"angle1", "-17.5", u"SetHorAngle -1800 500 500 -1500"},
        {"angle2", "-19.5", u"SetHorAngle -1500 500 500 -2000"},
        {"angle1", "327", u"SetHorAngle 32700 500 500 -1500"},
    };
    for (const auto& [attribute, value, call] : rows) {
        EXPECT_EQ(Update(SettingsWith({{attribute, value}})), 1);
        EXPECT_TRUE(calculation.calls.mid(0, 3).contains(call)) << attribute << ' ' << value;
    }
    Update(Changed("time_zone2=\"-6\"", "time_zone2=\"5.5\" utc_minutes=\"330\""));
    EXPECT_EQ(Params(), u"SetHorParams 4185 -8765 330 20 3 2026");
}

TEST_F(UpdateEverythingTest, unusableValue_changesNothing_showsNoMessage)
{
    Window();
    const QString times = Times();
    calculation.slots_[0] = 11;
    const std::pair<const char*, const char*> rows[] = {{"Current=\"Chicago\"", "Current=\"\""},
                                                        {"Current=\"Chicago\"", "Current=\"Nowhere\""},
                                                        {"useAdvWarn=\"false\"", "useAdvWarn=\"maybe\""},
                                                        {"time_zone2=\"-6\"", "time_zone2=\"\""},
                                                        {"</root>", ""},
                                                        {"missing", ""}};
    for (const auto& [before, after] : rows) {
        SCOPED_TRACE(std::string(before) + ' ' + after);
        if (qstrcmp(before, "missing") == 0) {
            QFile::remove(kSettingsFile);
            EXPECT_EQ(Window().UpdateEverything(), 0);
        } else {
            EXPECT_EQ(Update(Changed(before, after)), 0);
        }
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(platform.process.ended, 0);
        EXPECT_TRUE(calculation.calls.isEmpty());
        EXPECT_TRUE(IsRunning()) << "the scheduler goes on with its old minutes";
        EXPECT_EQ(Text("LblLocation"), u"Chicago, Illinois");
        EXPECT_EQ(Times(), times);
    }
}

TEST_F(UpdateEverythingTest, anyOtherFailure_saysError6_andEnds)
{
    const std::pair<const char*, const char*> rows[] = {
        {"angle1", "400"},         {"angle1", "-328"},          {"angle2", "328"},
        {"latitude_final", "328"}, {"longitude_final", "-400"}, {"time_zone2", "600"}};
    for (const auto& [attribute, value] : rows) {
        SCOPED_TRACE(std::string(attribute) + ' ' + value);
        platform.boxes.boxes.clear();
        platform.process.ended = 0;
        EXPECT_EQ(Update(SettingsWith({{attribute, value}, {"city", "Cicero"}})), 0);
        ExpectFatal(6);
        EXPECT_TRUE(calculation.calls.isEmpty());
        EXPECT_EQ(Text("LblLocation"), u"Cicero, Illinois")
            << "the settings block comes before the scheduler";
    }
}

TEST_F(UpdateEverythingTest, missingLibrary_saysError6_atTheStartToo)
{
    calculation.fails = true;
    Window();
    ExpectFatal(6);
    EXPECT_FALSE(IsRunning()) << "the clock starts behind the calculation";
}

TEST_F(UpdateEverythingTest, midnight_rereadsTheFile_andComputesTheDayTwice)
{
    Window();
    WriteSettings(Changed("Current=\"Chicago\"", "Current=\"Makkah\""));
    calculation.calls.clear();
    platform.clock.Set(QDate(2026, 3, 21), QTime(0, 0));
    platform.timers.Ticker()->Fire();
    EXPECT_EQ(calculation.calls.filter(QStringLiteral("SetHorParams")),
              (QStringList{QStringLiteral("SetHorParams 4185 -8765 -360 21 3 2026"),
                           QStringLiteral("SetHorParams 2142 3983 180 21 3 2026")}));
    EXPECT_EQ(Text("LblLocation"), QStringLiteral("Makkah, Saudi Arabia"));
    EXPECT_EQ(DateCaption(), QStringLiteral("Date: 21 March, 2026"));
    EXPECT_TRUE(IsRunning());
}

TEST_F(UpdateEverythingTest, schedulerStoppedByAnError_runsAgain)
{
    Window();
    calculation.fails = true;
    TickAt(0, 0);
    EXPECT_FALSE(IsRunning());
    calculation.fails = false;
    EXPECT_EQ(Window().UpdateEverything(), 1);
    EXPECT_TRUE(IsRunning());
}

} // namespace
