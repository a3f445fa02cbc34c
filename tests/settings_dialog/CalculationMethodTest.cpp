// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

#include <QGroupBox>
#include <QLabel>

namespace {

struct Preset
{
    const char* option;
    const char* caption;
    const char* method;
    const char* angle1;
    const char* angle2;
    const char* note;
    const char* noteText;
};

constexpr Preset kPresets[] = {
    {"OptISNA", "ISNA:", "ISNA", "-15", "-15", "Label3",
     "(Fajr Twilight = -15 Degrees, Isha Twilight = -15 Degrees)"},
    {"OptUOIS", "University Of Islamic Sciences:", "University Of Islamic Sciences", "-18", "-18", "Label4",
     "(Fajr Twilight = -18 Degrees, Isha Twilight = -18 Degrees)"},
    {"OptMWL", "Muslim World League:", "Muslim World League", "-18", "-17", "Label5",
     "(Fajr Twilight = -18 Degrees, Isha Twilight = -17 Degrees)"},
    {"OptEGAS", "Egyptian General Authority of Survey:", "Egyptian General Authority of Survey", "-19.5",
     "-17.5", "Label6", "(Fajr Twilight = -19.5 Degrees, Isha Twilight = -17.5 Degrees)"},
};

void PrintTo(const Preset& preset, std::ostream* stream)
{
    *stream << preset.option;
}

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

class CalculationMethodPreset : public CalculationMethodPage, public testing::WithParamInterface<Preset>
{
};

} // namespace

TEST_F(CalculationMethodPage, built_hasItsStartState)
{
    dialog = &forms.Touch<FrmAlerts>();
    EXPECT_EQ(Find<QGroupBox>("Frame2").title(), QStringLiteral("Fajr and Isha Calculation Method"));
    EXPECT_TRUE(IsTicked("OptISNA"));
    EXPECT_EQ(Find<OptionButton>("OptSetByUser").text(), QStringLiteral("Set Twighlight Angles:"));
    EXPECT_EQ(Find<QLabel>("Label7").text(), QStringLiteral("Fajr:"));
    EXPECT_EQ(Find<QLabel>("Label8").text(), QStringLiteral("Isha:"));
    ExpectAnglesLive(false);
    for (const char* const name : {"VScroll2", "VScroll3"}) {
        EXPECT_EQ(Bar(name).minimum(), -30);
        EXPECT_EQ(Bar(name).maximum(), 30);
    }
    EXPECT_EQ(Bar("VScroll2").Value(), 30);
    EXPECT_EQ(Bar("VScroll3").Value(), -30);
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), QString());
    EXPECT_EQ(TextOf("TxtSetIshaAngle"), QString());
}

TEST_P(CalculationMethodPreset, captions_standAsGiven)
{
    Open();
    const auto& option = Find<OptionButton>(GetParam().option);
    EXPECT_EQ(option.text(), QString::fromUtf8(GetParam().caption));
    EXPECT_TRUE(option.font().bold());
    EXPECT_EQ(Find<QLabel>(GetParam().note).text(), QString::fromUtf8(GetParam().noteText));
    EXPECT_GT(Widget(GetParam().note).y(), option.y());
}

TEST_F(CalculationMethodPage, optionOfTheUser_isBoldToo)
{
    Open();
    EXPECT_TRUE(Find<OptionButton>("OptSetByUser").font().bold());
}

TEST_P(CalculationMethodPreset, click_storesMethodAndAnglesInOneSave)
{
    // From a state in which no preset is selected, so that each of them becomes so.
    WriteUserDefined("-12.5", "-13");
    Open();
    Click(GetParam().option);
    EXPECT_EQ(Saves(), 1U);
    EXPECT_EQ(Stored(QStringLiteral("method")), QString::fromUtf8(GetParam().method));
    EXPECT_EQ(Stored(QStringLiteral("angle1")), QString::fromUtf8(GetParam().angle1));
    EXPECT_EQ(Stored(QStringLiteral("angle2")), QString::fromUtf8(GetParam().angle2));
    // Once in RefreshAngleControls and once to write.
    EXPECT_EQ(files.loads, 2);
    ExpectAnglesLive(false);
    // The boxes keep what they showed.
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), QStringLiteral("-12.5"));
    EXPECT_EQ(TextOf("TxtSetIshaAngle"), QStringLiteral("-13"));
    EXPECT_EQ(Bar("VScroll2").Value(), -13);
    Forget();
    Click(GetParam().option);
    EXPECT_EQ(Saves(), 0U);
    EXPECT_EQ(files.loads, 0);
}

TEST_P(CalculationMethodPreset, storedMethod_opensSelectedWithoutAWrite)
{
    WriteChanged(QStringLiteral("method=\"ISNA\""),
                 QStringLiteral("method=\"%1\"").arg(QString::fromUtf8(GetParam().method)));
    const QByteArray before = ReadSettings();
    Open();
    EXPECT_TRUE(IsTicked(GetParam().option));
    ExpectAnglesLive(false);
    EXPECT_EQ(ReadSettings(), before);
}

INSTANTIATE_TEST_SUITE_P(Presets, CalculationMethodPreset, testing::ValuesIn(kPresets),
                         [](const auto& row) { return std::string(row.param.option); });

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
        WriteChanged(QStringLiteral("method=\"ISNA\""),
                     QStringLiteral("method=\"%1\"").arg(QString::fromUtf8(method)));
        const QByteArray before = ReadSettings();
        Open();
        EXPECT_TRUE(IsTicked("OptISNA")) << method;
        EXPECT_EQ(ReadSettings(), before) << method;
        dialog->Unload();
    }
}

TEST_F(CalculationMethodPage, userDefined_startsFromThePresetsAngles)
{
    const struct
    {
        const char* locale;
        const char* fajr;
        const char* isha;
    } rows[] = {
        {"en_US", "-19.5", "-17.5"}, {"de_DE", "-19,5", "-17,5"}, {"ar_EG", "-19\u066b5", "-17\u066b5"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.locale);
        platform.region.locale = QLocale(QLatin1String(row.locale));
        WriteSettings();
        Open();
        Click("OptEGAS");
        Forget();
        Click("OptSetByUser");
        EXPECT_EQ(TextOf("TxtSetFarjAngle"), QString::fromUtf8(row.fajr));
        EXPECT_EQ(TextOf("TxtSetIshaAngle"), QString::fromUtf8(row.isha));
        EXPECT_EQ(Bar("VScroll2").Value(), -20);
        EXPECT_EQ(Bar("VScroll3").Value(), -18);
        ExpectAnglesLive(true);
        // Each box writes its angle back, then the method follows.
        EXPECT_EQ(SavedValues(QStringLiteral("angle1")), Values("-19.5 -19.5 -19.5"));
        EXPECT_EQ(SavedValues(QStringLiteral("angle2")), Values("-17.5 -17.5 -17.5"));
        EXPECT_EQ(SavedValues(QStringLiteral("method")),
                  QStringList({QStringLiteral("Egyptian General Authority of Survey"),
                               QStringLiteral("Egyptian General Authority of Survey"),
                               QStringLiteral("User Defined")}));
        dialog->Unload();
    }
}

TEST_F(CalculationMethodPage, userDefined_fetchesTheDecimalSignAfresh)
{
    platform.region.locale = QLocale(QStringLiteral("en_US"));
    Open();
    Click("OptEGAS");
    Click("OptSetByUser");
    ASSERT_EQ(TextOf("TxtSetFarjAngle"), QStringLiteral("-19.5"));
    platform.region.locale = QLocale(QStringLiteral("de_DE"));
    Click("OptEGAS");
    Click("OptSetByUser");
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), QStringLiteral("-19,5"));
    EXPECT_EQ(TextOf("TxtSetIshaAngle"), QStringLiteral("-17,5"));
    EXPECT_EQ(Stored(QStringLiteral("angle1")), QStringLiteral("-19.5"));
}

TEST_F(CalculationMethodPage, userDefinedAgainWithTheSameAngles_savesTheMethodOnly)
{
    Open();
    Click("OptSetByUser");
    Click("OptISNA");
    Forget();
    Click("OptSetByUser");
    EXPECT_EQ(SavedValues(QStringLiteral("method")), QStringList(QStringLiteral("User Defined")));
}

TEST_F(CalculationMethodPage, userDefinedInTheFile_opensLiveWithoutAWrite)
{
    WriteUserDefined("-19.5", "30.9");
    const QByteArray before = ReadSettings();
    Open();
    ASSERT_TRUE(IsOpen());
    EXPECT_TRUE(IsTicked("OptSetByUser"));
    ExpectAnglesLive(true);
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), QStringLiteral("-19.5"));
    EXPECT_EQ(Bar("VScroll2").Value(), -20);
    EXPECT_EQ(TextOf("TxtSetIshaAngle"), QStringLiteral("30.9"));
    EXPECT_EQ(Bar("VScroll3").Value(), 30);
    EXPECT_EQ(ReadSettings(), before);
}

TEST_F(CalculationMethodPage, anglesThatTheBarRefuses_closeTheDialogOnOpening)
{
    const struct
    {
        const char* angle1;
        const char* angle2;
    } rows[] = {{"", "-15"},      {"abc", "-15"},   {"-45", "-15"}, {"-30.1", "-15"},
                {"31", "-15"},    {"-15", ""},      {"-15", "31"},  {"-15", "-30.5"},
                {"1e300", "-15"}, {"-15", "99999"}, {"-15,5", "0"}, {"1 5", "0"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.angle1 << " and " << row.angle2);
        WriteUserDefined(row.angle1, row.angle2);
        const QByteArray before = ReadSettings();
        main.calls.clear();
        dialog = &forms.Touch<FrmAlerts>();
        dialog->Show();
        dialog->SelectTab(1);
        ExpectHandedOver();
        EXPECT_EQ(ReadSettings(), before);
    }
}

TEST_F(CalculationMethodPage, angleOutOfLimits_chosenByHand_isCutInsteadOfFailing)
{
    // The box cuts the angle before the bar sees it; under a load nothing does.
    WriteChanged(QStringLiteral("angle1=\"-15\""), QStringLiteral("angle1=\"-45\""));
    Open();
    Click("OptSetByUser");
    ASSERT_TRUE(IsOpen());
    EXPECT_EQ(TextOf("TxtSetFarjAngle"), QStringLiteral("-30"));
    EXPECT_EQ(Stored(QStringLiteral("angle1")), QStringLiteral("-30"));
    EXPECT_EQ(Stored(QStringLiteral("method")), QStringLiteral("User Defined"));
}

TEST_F(CalculationMethodPage, angleThatIsNoNumber_chosenByHand_closesTheDialogWithoutAWrite)
{
    WriteChanged(QStringLiteral("angle2=\"-15\""), QStringLiteral("angle2=\"abc\""));
    Open();
    Click("OptSetByUser");
    ExpectHandedOver();
    EXPECT_EQ(Stored(QStringLiteral("angle2")), QStringLiteral("abc"));
    EXPECT_EQ(Stored(QStringLiteral("method")), QStringLiteral("ISNA"));
}
