// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/ServiceAddresses.h"
#include "settings_dialog/MobilePageFixture.h"

#include <QLabel>

namespace {

const QString kIncomplete =
    QStringLiteral("You must first enter your Mobile Device number and personal Code");
const QString kUnverified = QStringLiteral("Could not verify Mobil Alert Settings.");
const QString kQuestion =
    QStringLiteral("This will clear your Mobile Device ID and Personal code?\r\nDo you want to continue?");

using MobilePageTest = MobilePageFixture;

} // namespace

TEST_F(MobilePageTest, built_hasItsCaptionsAndStartState)
{
    dialog = &forms.Touch<FrmAlerts>();
    const QString first =
        QStringLiteral("1. From your mobile device, send a text message to %1 with the word \"test\".")
            .arg(ServiceAddresses::Signup(Configuration()));
    EXPECT_EQ(Find<QLabel>("LblMobil1").text(), first);
    ExpectCaptions(
        {{"LblMobilH1", u"Mobile Alert sends an alert to your mobile device at time of prayer."},
         {"LblMobilH2", u"Your mobile device must be able to send / receive text messages"},
         {"LblMobil2", u"2: You\u2019ll momentarily receive a text message showing your mobile device ID and "
                       u"personal code."},
         {"LblMobil3", u"3: Enter your mobile device ID and personal code in appropriate boxes below."},
         {"LblMobilDID", u"Mobile Device ID:"},
         {"LblMobilPC", u"Personal Code:"},
         {"LblMobil4", u"4. Click register."},
         {"LblReset", u"Reset"},
         {"ChkMobilEnable", u"Enable Mobile Alerts"},
         {"CmdMobilReg", u"Register"}});
    EXPECT_FALSE(IsTicked("ChkMobilEnable"));
    ExpectLive(true, true);
    EXPECT_TRUE(Widget("FrmMobilAlert").isHidden());
}

TEST_F(MobilePageTest, load_showsTheStatesOfTheFile)
{
    const struct
    {
        const char* enabled;
        const char* confirm;
        bool ticked;
        bool boxes;
        bool button;
    } rows[] = {
        {"false", "0", false, true, true}, {"false", "1", false, true, false},
        {"true", "0", true, true, true},   {"true", "1", true, false, false},
        {"True", "0", false, true, true},  {"true", "", true, true, true},
        {"true", "2", true, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.enabled << ' ' << row.confirm);
        WriteMobile(row.enabled, row.confirm, "D1", "P1");
        const QByteArray before = ReadSettings();
        Open(2);
        EXPECT_EQ(IsTicked("ChkMobilEnable"), row.ticked);
        ExpectShown("D1", "P1");
        EXPECT_TRUE(IsLive("FrmMobilSub"));
        EXPECT_TRUE(IsLive("LblReset"));
        EXPECT_EQ(IsLive("TxtMDID"), row.boxes);
        EXPECT_EQ(IsLive("TxtPC"), row.boxes);
        EXPECT_EQ(IsLive("CmdMobilReg"), row.button);
        EXPECT_EQ(ReadSettings(), before);
        dialog->Unload();
    }
}

TEST_F(MobilePageTest, enableClick_movesBetweenTheStatesInOneSave)
{
    for (const bool confirmed : {false, true}) {
        WriteMobile("false", confirmed ? "1" : "0", "D1", "P1");
        Open(2);
        for (const bool ticked : {true, false, true}) {
            Forget();
            ChangePlaceInTheFile();
            Click("ChkMobilEnable");
            ExpectChangedPlace();
            EXPECT_EQ(SavedValues("mobileEnabled"), ticked ? u"true" : u"false");
            ExpectLive(ticked, ticked && !confirmed);
            ExpectStored("D1", "P1", confirmed ? "1" : "0");
        }
        dialog->Unload();
    }
}

TEST_F(MobilePageTest, untick_leavesThePrayersAndGreysTheirMobileBoxAtTheNextLoad)
{
    WriteMobile("true", "1");
    Open(3);
    Click("ChkIndMobAlert");
    Click("LblMobilAlert");
    Click("ChkMobilEnable");
    EXPECT_EQ(Stored("mobil", "fajr"), u"true");
    Click("LblFajr");
    EXPECT_FALSE(IsLive("ChkIndMobAlert"));
    EXPECT_TRUE(IsTicked("ChkIndMobAlert"));
}

TEST_F(MobilePageTest, typing_isStoredAtEachKeystroke)
{
    Open(2);
    ChangePlaceInTheFile();
    QTest::keyClicks(&Widget("TxtMDID"), QStringLiteral("12"));
    EXPECT_EQ(SavedValues("mobileDID"), u"1|12");
    Forget();
    QTest::keyClicks(&Widget("TxtPC"), QStringLiteral("ab"));
    EXPECT_EQ(SavedValues("mobilePC"), u"a|ab");
    ExpectChangedPlace();
    ExpectStored("12", "ab", "0");
    EXPECT_EQ(files.loads, 2);
}

// "Register"

TEST_F(MobilePageTest, register_withAnEmptyBox_asksForBothWithoutTryingTheNetwork)
{
    for (const char* const filled : {"", "TxtMDID", "TxtPC"}) {
        WriteSettings();
        Open(2);
        if (*filled != '\0') {
            QTest::keyClicks(&Widget(filled), QStringLiteral("1"));
        }
        Forget();
        for (const bool byKey : {false, true}) {
            platform.boxes.boxes.clear();
            byKey ? DialogTest::Press("CmdMobilReg", QStringLiteral("Return")) : Click("CmdMobilReg");
            ExpectBox(kIncomplete);
        }
        EXPECT_TRUE(platform.http.probes.isEmpty());
        EXPECT_EQ(Saves(), 0U);
        EXPECT_EQ(files.loads, 0);
        dialog->Unload();
    }
}

TEST_F(MobilePageTest, register_offlineOrWithoutAReply_saysTheSame)
{
    OpenFilled();
    for (const char* const reply : {"offline", "", "<root result=", "no document"}) {
        platform.http.reachable = qstrcmp(reply, "offline") != 0;
        platform.http.probes.clear();
        platform.http.requests.clear();
        platform.boxes.boxes.clear();
        Reply(reply);
        Click("CmdMobilReg");
        ExpectBox(kOffline);
        EXPECT_EQ(platform.http.probes.size(), 1);
        EXPECT_EQ(platform.http.requests.size(), platform.http.reachable ? 1 : 0);
    }
    EXPECT_EQ(Saves(), 0U);
    ExpectLive(true, true);
}

TEST_F(MobilePageTest, register_asksTheServiceOfTheSettingsWithTheCodeAsTyped)
{
    Configuration& settings = forms.Variables().Settings;
    settings.ServiceText = QStringLiteral("https://times.example.org");
    settings.SignupText = QStringLiteral("test@example.org");
    settings.ProbeText = QStringLiteral("http://probe.example.org/");
    OpenFilled();
    EXPECT_EQ(Find<QLabel>("LblMobil1").text(),
              u"1. From your mobile device, send a text message to test@example.org with the word \"test\".");
    Click("CmdMobilReg");
    EXPECT_EQ(platform.http.probes, QStringList(settings.ProbeText));
    EXPECT_EQ(platform.http.requests.join(u'|'),
              u"https://times.example.org/cgi-bin/dbeacon/ma/"
              u"confirmSignup.pl?prod_string=P-77&vCode=55 21&&dist_string=dbeacon");
}

TEST_F(MobilePageTest, register_replies_areStoredAndShown)
{
    const struct
    {
        const char* name;
        const char* reply;
        const char* confirm;
        QString shown;
        bool locks;
    } rows[] = {
        {"confirmed", "<root result='1' message='Welcome'/>", "1", QStringLiteral("Welcome"), true},
        {"refused", "<root result='0' message='Wrong code'/>", "0", QStringLiteral("Wrong code"), false},
        {"confirmed without message", "<root result='1'/>", "1", kUnverified, true},
        {"confirmed with empty message", "<root result='1' message=''/>", "1", kUnverified, true},
        {"refused without message", "<root result='0'/>", "0", kUnverified, false},
        {"no result", "<root message='Later'/>", "", QStringLiteral("Later"), false},
        {"nothing", "<root/>", "", kUnverified, false},
        {"another root", "<reply result='1' message='Welcome'/>", "", kUnverified, false},
        {"odd result", "<root result=' 1' message='?'/>", " 1", QStringLiteral("?"), false},
        {"markup", "<root result='0' message='&lt;b&gt;no&lt;/b&gt;'/>", "0", QStringLiteral("<b>no</b>"),
         false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        WriteSettings();
        OpenFilled();
        platform.boxes.boxes.clear();
        Reply(row.reply);
        platform.boxes.whileOpen = [&] {
            EXPECT_EQ(Stored("mobileConfirm"), QString::fromUtf8(row.confirm)) << "stored before it speaks";
            EXPECT_EQ(IsLive("CmdMobilReg"), !row.locks);
        };
        Click("CmdMobilReg");
        ExpectBox(row.shown);
        EXPECT_EQ(Saves(), 1U);
        ExpectStored("15551234", "55 21&", row.confirm);
        ExpectLive(true, !row.locks);
        EXPECT_FALSE(IsTicked("ChkMobilEnable"));
        EXPECT_EQ(Stored("mobileEnabled"), u"false");
        dialog->Unload();
    }
}

// No save is checked: the service has confirmed, so the form locks; at the next opening the form shows the
// state of the file.
TEST_F(MobilePageTest, register_fileThatCannotBeWritten_speaksAndLocksAllTheSame)
{
    OpenFilled();
    Reply("<root result='1' message='Welcome'/>");
    files.refuses = true;
    Click("CmdMobilReg");
    ExpectBox(QStringLiteral("Welcome"));
    ExpectLive(true, false);
    ExpectStored("15551234", "55 21&", "0");
}

TEST_F(MobilePageTest, register_missingAttributes_areAddedInThisOrder)
{
    OpenFilled();
    WriteChanged(QStringLiteral(R"( mobileDID="" mobilePC="" mobileConfirm="0")"), QString());
    Reply("<root result='1' message='Welcome'/>");
    Click("CmdMobilReg");
    ExpectStored("15551234", "55 21&", "1");
    const QByteArray text = ReadSettings();
    EXPECT_LT(text.indexOf("mobileConfirm="), text.indexOf("mobileDID="));
    EXPECT_LT(text.indexOf("mobileDID="), text.indexOf("mobilePC="));
}

// "Reset"

TEST_F(MobilePageTest, reset_answeredNo_changesNothing)
{
    OpenConfirmed();
    const QByteArray before = ReadSettings();
    platform.boxes.whileOpen = [this] { EXPECT_FALSE(IsLive("LblReset")); };
    Click("LblReset");
    EXPECT_EQ(platform.boxes.boxes, std::vector{FakeMessageBoxes::Question(kQuestion)});
    EXPECT_EQ(platform.boxes.lastDefault, MessageBoxes::DefaultAnswer::No);
    EXPECT_TRUE(IsLive("LblReset"));
    EXPECT_EQ(ReadSettings(), before);
    EXPECT_EQ(Saves(), 0U);
    ExpectLive(true, false);
}

TEST_F(MobilePageTest, reset_byKey_hasTheFocusBackAfterTheQuestion)
{
    OpenConfirmed();
    for (const bool answer : {false, true}) {
        platform.boxes.boxes.clear();
        platform.boxes.answers = {answer};
        Widget("LblReset").setFocus();
        QTest::keyClick(&Widget("LblReset"), Qt::Key_Return);
        EXPECT_EQ(platform.boxes.boxes.size(), 1U);
        EXPECT_EQ(dialog->focusWidget(), &Widget("LblReset")) << answer;
    }
}

TEST_F(MobilePageTest, reset_answeredYes_clearsAndOpensTheForm)
{
    OpenConfirmed();
    ChangePlaceInTheFile();
    platform.boxes.answers = {true, true};
    Click("LblReset");
    ExpectChangedPlace();
    ExpectStored("", "", "0");
    ExpectLive(true, true);
    ExpectShown("", "");
    // Each box saves when it is cleared, then all three are saved together.
    EXPECT_EQ(SavedValues("mobileDID"), u"||");
    EXPECT_EQ(SavedValues("mobilePC"), u"P1||");
    EXPECT_EQ(SavedValues("mobileConfirm"), u"1|1|0");
    EXPECT_TRUE(platform.http.probes.isEmpty());
    EXPECT_TRUE(platform.http.requests.isEmpty());
    EXPECT_EQ(Stored("mobileEnabled"), u"true");
    Forget();
    Click("LblReset");
    EXPECT_EQ(Saves(), 1U) << "the boxes are empty";
    Click("LblFajr");
    EXPECT_FALSE(IsLive("ChkIndMobAlert"));
}

TEST_F(MobilePageTest, reset_fileThatCannotBeWritten_opensTheFormAllTheSame)
{
    OpenConfirmed();
    platform.boxes.answers = {true};
    files.refuses = true;
    Click("LblReset");
    ExpectLive(true, true);
    ExpectShown("", "");
    ExpectStored("D1", "P1", "1");
}

TEST_F(MobilePageTest, reset_dialogClosedUnderTheQuestion_stopsQuietly)
{
    OpenConfirmed();
    platform.boxes.answers = {true};
    platform.boxes.whileOpen = [this] { dialog->Unload(); };
    Click("LblReset");
    EXPECT_FALSE(IsOpen());
    ExpectStored("D1", "P1", "1");
}
