// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QLabel>

namespace {

struct Preset
{
    const char* option;
    const char* method;
    const char* angle1;
    const char* angle2;
    const char* note;
};

constexpr Preset kPresets[] = {
    {"OptISNA", "ISNA", "-15", "-15", "Label3"},
    {"OptUOIS", "University Of Islamic Sciences", "-18", "-18", "Label4"},
    {"OptMWL", "Muslim World League", "-18", "-17", "Label5"},
    {"OptEGAS", "Egyptian General Authority of Survey", "-19.5", "-17.5", "Label6"}};

constexpr const char* kAngleControls[] = {"TxtSetFarjAngle", "VScroll2", "TxtSetIshaAngle", "VScroll3"};

class CalculationMethodPage : public DialogTest
{
protected:
    void ExpectAnglesLive(bool live) const
    {
        for (const char* const control : kAngleControls) {
            EXPECT_EQ(IsLive(control), live) << control;
        }
    }
};

} // namespace

TEST_F(CalculationMethodPage, built_hasItsStartState)
{
    dialog = &forms.Touch<FrmAlerts>();
    ExpectCaptions({{"Frame2", u"Fajr and Isha Calculation Method"},
                    {"OptSetByUser", u"Set Twighlight Angles:"},
                    {"Label7", u"Fajr:"},
                    {"Label8", u"Isha:"},
                    {"TxtSetFarjAngle", u""},
                    {"TxtSetIshaAngle", u""}});
    EXPECT_TRUE(IsTicked("OptISNA"));
    ExpectAnglesLive(false);
    for (const char* const name : {"VScroll2", "VScroll3"}) {
        EXPECT_EQ(Bar(name).minimum(), -30);
        EXPECT_EQ(Bar(name).maximum(), 30);
    }
    EXPECT_EQ(Bar("VScroll2").Value(), 30);
    EXPECT_EQ(Bar("VScroll3").Value(), -30);
}

TEST_F(CalculationMethodPage, presets_haveTheirCaptionsAndNotesBelow)
{
    Open();
    for (const Preset& preset : kPresets) {
        const auto& option = Find<OptionButton>(preset.option);
        EXPECT_EQ(option.text(), QString::fromUtf8(preset.method) + u':');
        EXPECT_TRUE(option.font().bold());
        EXPECT_EQ(Find<QLabel>(preset.note).text(),
                  QStringLiteral("(Fajr Twilight = %1 Degrees, Isha Twilight = %2 Degrees)")
                      .arg(QString::fromUtf8(preset.angle1), QString::fromUtf8(preset.angle2)));
        EXPECT_GT(Widget(preset.note).y(), option.y());
    }
    EXPECT_TRUE(Find<OptionButton>("OptSetByUser").font().bold());
}

TEST_F(CalculationMethodPage, preset_clicked_storesMethodAndAnglesInOneSave_andOpensSelectedAfterwards)
{
    for (const Preset& preset : kPresets) {
        SCOPED_TRACE(preset.option);
        // Start without a selected preset, so that each click selects one.
        WriteUserDefined("-12.5", "-13");
        Open();
        ChangePlaceInTheFile();
        Click(preset.option);
        ExpectChangedPlace();
        EXPECT_EQ(Saves(), 1U);
        EXPECT_EQ(Stored("method"), QString::fromUtf8(preset.method));
        EXPECT_EQ(Stored("angle1"), QString::fromUtf8(preset.angle1));
        EXPECT_EQ(Stored("angle2"), QString::fromUtf8(preset.angle2));
        // Once in RefreshAngleControls and once to write.
        EXPECT_EQ(files.loads, 2);
        ExpectAnglesLive(false);
        // The boxes keep their texts.
        EXPECT_EQ(TextOf("TxtSetFarjAngle"), u"-12.5");
        EXPECT_EQ(TextOf("TxtSetIshaAngle"), u"-13");
        EXPECT_EQ(Bar("VScroll2").Value(), -13);
        Forget();
        Click(preset.option);
        EXPECT_EQ(files.loads, 0);
        dialog->Unload();
        const QByteArray before = ReadSettings();
        Open();
        EXPECT_TRUE(IsTicked(preset.option));
        ExpectAnglesLive(false);
        EXPECT_EQ(ReadSettings(), before);
        dialog->Unload();
    }
}

TEST_F(CalculationMethodPage, preset_onAFileWithoutTheAttributes_writesThemInOrder)
{
    WriteChanged(QStringLiteral("angle1=\"-15\" angle2=\"-15\" method=\"ISNA\" "), QString());
    Open();
    Click("OptMWL");
    EXPECT_TRUE(ReadSettings().contains(
        R"(mobileConfirm="0" method="Muslim World League" angle1="-18" angle2="-17")"));
}

TEST_F(CalculationMethodPage, unknownMethods_openOnIsnaWithoutAWrite)
{
    for (const char* const method : {"", "isna", "user defined", "User Defined ", "Umm al-Qura"}) {
        WriteSettings(SettingsWith({{"method", method}}));
        const QByteArray before = ReadSettings();
        Open();
        EXPECT_TRUE(IsTicked("OptISNA")) << method;
        EXPECT_EQ(ReadSettings(), before) << method;
        dialog->Unload();
    }
}

TEST_F(CalculationMethodPage, userDefined_startsFromThePresetsAngles_withTheDecimalSignOfThatMoment)
{
    const struct
    {
        const char* locale;
        const char16_t* fajr;
        const char16_t* isha;
    } rows[] = {{"en_US", u"-19.5", u"-17.5"},
                {"de_DE", u"-19,5", u"-17,5"},
                {"ar_EG", u"-19\u066b5", u"-17\u066b5"}};
    Open();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.locale);
        Click("OptEGAS");
        platform.region.locale = QLocale(QLatin1String(row.locale));
        Forget();
        Click("OptSetByUser");
        EXPECT_EQ(TextOf("TxtSetFarjAngle"), row.fajr);
        EXPECT_EQ(TextOf("TxtSetIshaAngle"), row.isha);
        EXPECT_EQ(Bar("VScroll2").Value(), -20);
        EXPECT_EQ(Bar("VScroll3").Value(), -18);
        ExpectAnglesLive(true);
        // Each box writes its angle back, then the method follows.
        EXPECT_EQ(SavedValues("angle1"), u"-19.5|-19.5|-19.5");
        EXPECT_EQ(SavedValues("angle2"), u"-17.5|-17.5|-17.5");
        EXPECT_EQ(SavedValues("method"), u"Egyptian General Authority of Survey|"
                                         u"Egyptian General Authority of Survey|User Defined");
    }
}

TEST_F(CalculationMethodPage, userDefinedAgainWithTheSameAngles_savesTheMethodOnly)
{
    Open();
    Click("OptSetByUser");
    Click("OptISNA");
    Forget();
    Click("OptSetByUser");
    EXPECT_EQ(SavedValues("method"), u"User Defined");
}

TEST_F(CalculationMethodPage, userDefinedInTheFile_opensLiveWithoutAWrite)
{
    WriteUserDefined("-19.5", "30.9");
    const QByteArray before = ReadSettings();
    Open();
    ASSERT_TRUE(IsOpen());
    EXPECT_TRUE(IsTicked("OptSetByUser"));
    ExpectAnglesLive(true);
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), u"-19.5");
    EXPECT_EQ(Bar("VScroll2").Value(), -20);
    EXPECT_EQ(TextOf("TxtSetIshaAngle"), u"30.9");
    EXPECT_EQ(Bar("VScroll3").Value(), 30);
    EXPECT_EQ(ReadSettings(), before);
}

TEST_F(CalculationMethodPage, anglesThatTheBarRefuses_closeTheDialogOnOpening)
{
    const std::pair<const char*, const char*> rows[] = {
        {"", "-15"},   {"abc", "-15"},   {"-45", "-15"},   {"-30.1", "-15"}, {"31", "-15"},  {"-15", ""},
        {"-15", "31"}, {"-15", "-30.5"}, {"1e300", "-15"}, {"-15", "99999"}, {"-15,5", "0"}, {"1 5", "0"}};
    for (const auto& [angle1, angle2] : rows) {
        SCOPED_TRACE(testing::Message() << angle1 << " and " << angle2);
        WriteUserDefined(angle1, angle2);
        ExpectClosedOnOpening();
    }
}

TEST_F(CalculationMethodPage, angleOutOfLimits_chosenByHand_isCutInsteadOfFailing)
{
    // The box cuts the angle before the bar gets it; during a load the angle is not cut.
    WriteSettings(SettingsWith({{"angle1", "-45"}}));
    Open();
    Click("OptSetByUser");
    ASSERT_TRUE(IsOpen());
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), u"-30");
    EXPECT_EQ(Stored("angle1"), u"-30");
    EXPECT_EQ(Stored("method"), u"User Defined");
}

TEST_F(CalculationMethodPage, angleThatIsNoNumber_chosenByHand_closesTheDialogWithoutAWrite)
{
    WriteSettings(SettingsWith({{"angle2", "abc"}}));
    Open();
    Click("OptSetByUser");
    ExpectHandedOver();
    EXPECT_EQ(Stored("angle2"), u"abc");
    EXPECT_EQ(Stored("method"), u"ISNA");
}
