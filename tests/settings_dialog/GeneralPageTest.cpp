// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogTest.h"

namespace {

class GeneralPageTest : public DialogTest
{
protected:
    static void WriteAdvance(const char* minutes)
    {
        WriteSettings(SettingsWith({{"useAdvWarn", "true"}, {"advWarn", minutes}}));
    }
};

} // namespace

TEST_F(GeneralPageTest, built_hasItsCaptionsAndStartState)
{
    dialog = &forms.Touch<FrmAlerts>();
    ExpectCaptions({{"Frame3", u"Asr Calculation Method"},
                    {"FrmFormat", u"Clock Format"},
                    {"Frame4", u"General"},
                    {"OptShafi", u"Shafi"},
                    {"OptHanafi", u"Hanafi"},
                    {"Opt12Hour", u"12 Hour"},
                    {"Opt24Hour", u"24 Hour"},
                    {"ChkDLS", u"Use Day Light Savings"},
                    {"ChkAdvWarn", u"Give Advanced Alert"},
                    {"CmdClose", u"Close"},
                    {"Label1", u"Current Location:"},
                    {"Label2", u"Minutes"}});
    EXPECT_TRUE(IsTicked("OptShafi"));
    for (const char* const name : {"OptHanafi", "Opt12Hour", "Opt24Hour", "ChkDLS", "ChkAdvWarn"}) {
        EXPECT_FALSE(IsTicked(name)) << name;
    }
    EXPECT_EQ(Widget("CmdClose").parentWidget(), &Widget("FrmGeneral"));
    EXPECT_EQ(Widget("Label1").parentWidget(), &Widget("FrmGeneral"));
    EXPECT_FALSE(IsLive("TxtAdvWarn"));
    EXPECT_FALSE(IsLive("VScroll1"));
    EXPECT_EQ(Bar("VScroll1").minimum(), 1);
    EXPECT_EQ(Bar("VScroll1").maximum(), 30);
    EXPECT_EQ(Bar("VScroll1").Value(), 30);
}

TEST_F(GeneralPageTest, absentAttributes_readAsNotSet)
{
    WriteChanged("method=\"ISNA\" useAdvWarn=\"false\" advWarn=\"10\" asrMethode=\"shafi\" "
                 "useDLS=\"false\" hourmode=\"24\" ",
                 "");
    const QByteArray before = ReadSettings();
    Open();
    for (const char* const name : {"OptHanafi", "Opt12Hour", "OptISNA"}) {
        EXPECT_TRUE(IsTicked(name)) << name;
    }
    for (const char* const name : {"ChkAdvWarn", "ChkDLS", "OptShafi"}) {
        EXPECT_FALSE(IsTicked(name)) << name;
    }
    EXPECT_EQ(TextOf("TxtAdvWarn"), u"");
    EXPECT_FALSE(IsLive("TxtAdvWarn"));
    EXPECT_FALSE(IsLive("VScroll1"));
    EXPECT_EQ(Bar("VScroll1").Value(), 30);
    EXPECT_EQ(ReadSettings(), before);
}

TEST_F(GeneralPageTest, storedValues_areComparedExactly)
{
    const struct
    {
        const char* attribute;
        const char* value;
        const char* control;
        bool ticked;
    } rows[] = {
        {"useDLS", "true", "ChkDLS", true},         {"useDLS", "True", "ChkDLS", false},
        {"useDLS", "1", "ChkDLS", false},           {"useAdvWarn", "TRUE", "ChkAdvWarn", false},
        {"asrMethode", "shafi", "OptShafi", true},  {"asrMethode", "hanafi", "OptHanafi", true},
        {"asrMethode", "Shafi", "OptHanafi", true}, {"hourmode", "24", "Opt24Hour", true},
        {"hourmode", "12", "Opt12Hour", true},      {"hourmode", "24 ", "Opt12Hour", true},
    };
    for (const auto& row : rows) {
        WriteSettings(SettingsWith({{row.attribute, row.value}}));
        Open();
        EXPECT_EQ(IsTicked(row.control), row.ticked) << row.value;
        dialog->Unload();
    }
}

TEST_F(GeneralPageTest, clicks_storeTheirAttributeInOneSave_andKeepTheChangesOfOthers)
{
    const struct
    {
        const char* attribute;
        const char* before;
        const char* control;
        const char* value;
    } rows[] = {
        {"asrMethode", "hanafi", "OptShafi", "shafi"}, {"asrMethode", "shafi", "OptHanafi", "hanafi"},
        {"hourmode", "24", "Opt12Hour", "12"},         {"hourmode", "12", "Opt24Hour", "24"},
        {"useDLS", "false", "ChkDLS", "true"},         {"useDLS", "true", "ChkDLS", "false"},
        {"useAdvWarn", "false", "ChkAdvWarn", "true"}, {"useAdvWarn", "true", "ChkAdvWarn", "false"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.control << " to " << row.value);
        WriteSettings(SettingsWith({{row.attribute, row.before}}));
        Open();
        ChangePlaceInTheFile();
        Click(row.control);
        ExpectChangedPlace();
        EXPECT_EQ(SavedValues(row.attribute), QString::fromUtf8(row.value));
        EXPECT_EQ(files.loads, 1);
        EXPECT_EQ(files.savedNames.join(u'|'), u"settings.xml");
        EXPECT_EQ(Stored("advWarn"), u"10");
        EXPECT_EQ(Stored("method"), u"ISNA");
        EXPECT_TRUE(main.calls.isEmpty());
        if (qstrncmp(row.control, "Opt", 3) == 0) {
            Click(row.control);
            EXPECT_EQ(Saves(), 1U);
        }
        dialog->Unload();
        main.calls.clear();
    }
}

TEST_F(GeneralPageTest, reload_leavesBoxesThatTheFileNoLongerTicks)
{
    Open();
    Click("ChkDLS");
    Click("ChkAdvWarn");
    WriteSettings();
    Click("LblGeneral");
    EXPECT_TRUE(IsTicked("ChkDLS"));
    EXPECT_TRUE(IsTicked("ChkAdvWarn"));
    EXPECT_TRUE(IsLive("VScroll1"));
}

TEST_F(GeneralPageTest, advanceAlert_opensLiveWithItsMinutes)
{
    for (const auto& [stored, bar] : {std::pair{"1", 1}, std::pair{"10", 10}, std::pair{"30", 30},
                                      std::pair{"10.5", 10}, std::pair{"30.9", 30}}) {
        WriteAdvance(stored);
        const QByteArray before = ReadSettings();
        Open();
        ASSERT_TRUE(IsOpen()) << stored;
        EXPECT_TRUE(IsTicked("ChkAdvWarn"));
        EXPECT_TRUE(IsLive("TxtAdvWarn"));
        EXPECT_TRUE(IsLive("VScroll1"));
        EXPECT_EQ(TextOf("TxtAdvWarn"), QString::fromUtf8(stored));
        EXPECT_EQ(Bar("VScroll1").Value(), bar);
        EXPECT_EQ(ReadSettings(), before);
        dialog->Unload();
    }
}

TEST_F(GeneralPageTest, advanceAlertThatTheBarRefuses_closesTheDialogOnOpening)
{
    for (const char* const minutes : {"", "abc", "45", "31", "0", "0.9", "-1", "99999", "1e300"}) {
        SCOPED_TRACE(minutes);
        WriteAdvance(minutes);
        ExpectClosedOnOpening();
    }
    WriteChanged("useAdvWarn=\"false\" advWarn=\"10\"", "useAdvWarn=\"true\"");
    ExpectClosedOnOpening();
}

TEST_F(GeneralPageTest, refusedMinutesWithoutTheAdvanceAlert_areNotRead)
{
    WriteChanged("advWarn=\"10\"", "advWarn=\"abc\"");
    Open();
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(TextOf("TxtAdvWarn"), u"");
}

TEST_F(GeneralPageTest, advanceAlertTickedAndUnticked_keepsItsMinutes)
{
    WriteAdvance("12");
    Open();
    for (const bool isTicked : {false, true}) {
        Click("ChkAdvWarn");
        EXPECT_EQ(IsLive("TxtAdvWarn"), isTicked);
        EXPECT_EQ(IsLive("VScroll1"), isTicked);
        EXPECT_EQ(TextOf("TxtAdvWarn"), u"12");
        EXPECT_EQ(Stored("advWarn"), u"12");
        EXPECT_EQ(Stored("useAdvWarn"), isTicked ? u"true" : u"false");
    }
}

TEST_F(GeneralPageTest, advanceAlertBar_storesMinutesThatEveryoneCanRead)
{
    for (const char* const locale : {"en_US", "de_DE", "ar_EG"}) {
        platform.region.locale = QLocale(QLatin1String(locale));
        WriteAdvance("12");
        Open();
        ChangePlaceInTheFile();
        ClickArrow("VScroll1", true);
        ClickArrow("VScroll1", true);
        QTest::keyClick(&Widget("VScroll1"), Qt::Key_Down);
        EXPECT_EQ(SavedValues("advWarn"), u"13|14|13") << locale;
        ExpectChangedPlace();
        EXPECT_EQ(TextOf("TxtAdvWarn"), u"13");
        dialog->Unload();
    }
}

TEST_F(GeneralPageTest, advanceAlertBar_firstUse_startsFromItsHighEnd)
{
    Open();
    Click("ChkAdvWarn");
    ClickArrow("VScroll1", true);
    EXPECT_EQ(Stored("advWarn"), u"10");
    ClickArrow("VScroll1", false);
    EXPECT_EQ(Stored("advWarn"), u"29");
}

TEST_F(GeneralPageTest, advanceAlertBox_refusesTyping_filledByCodeItStoresTheWholePart)
{
    WriteAdvance("12");
    Open();
    EXPECT_TRUE(Box("TxtAdvWarn").isReadOnly());
    QTest::keyClicks(&Widget("TxtAdvWarn"), QStringLiteral("5"));
    Paste("TxtAdvWarn", QStringLiteral("7"));
    EXPECT_EQ(TextOf("TxtAdvWarn"), u"12");
    EXPECT_EQ(Saves(), 0U);
    // No range test here: the bar is the only input.
    Box("TxtAdvWarn").SetText(QStringLiteral("45.7"));
    EXPECT_EQ(SavedValues("advWarn"), u"45");
    EXPECT_EQ(TextOf("TxtAdvWarn"), u"45.7");
    EXPECT_EQ(Bar("VScroll1").Value(), 12);
    Forget();
    Box("TxtAdvWarn").SetText(QStringLiteral("x"));
    EXPECT_EQ(TextOf("TxtAdvWarn"), u"45");
    EXPECT_EQ(SavedValues("advWarn"), u"45");
}
