// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Prayers.h"
#include "settings_dialog/DialogTest.h"

#include <QLabel>

namespace {

QString Element(const char* name, const char* attributes)
{
    return QStringLiteral("<%1 %2/>").arg(QString::fromUtf8(name), QString::fromUtf8(attributes));
}

constexpr const char* kOn = R"(enabled="true" popup="true" mobil="false" play="false" audioFile="")";
constexpr const char* kOff = R"(enabled="false" popup="true" mobil="false" play="false" audioFile="")";
constexpr const char* kSubOptions[] = {"ChkSilAlert", "ChkAudioAlert", "FrmFileSelect"};

class PrayerPageTest : public DialogTest
{
protected:
    /// Isha with these attributes.
    static void WriteIsha(const char* attributes)
    {
        WriteChanged(Element("isha", kOn), Element("isha", attributes));
    }
    void ExpectSubOptionsLive(bool live) const
    {
        for (const char* const control : kSubOptions) {
            EXPECT_EQ(IsLive(control), live) << control;
        }
    }
    /// "Mobile Alert" is grey, and gives this reason to the mouse and to a screen reader; without a reason it
    /// is enabled.
    void ExpectMobileAlert(const QString& reason) const
    {
        const QWidget& box = Widget("ChkIndMobAlert");
        EXPECT_EQ(box.isEnabled(), reason.isEmpty());
        EXPECT_EQ(box.toolTip(), reason);
        EXPECT_EQ(box.accessibleDescription(), reason);
    }
};

} // namespace

TEST_F(PrayerPageTest, built_hasItsCaptionsAndStartState)
{
    dialog = &forms.Touch<FrmAlerts>();
    ExpectCaptions({{"ChkAlertMain", u"Alert on"},
                    {"ChkSilAlert", u"Silent alert (Pop up message)"},
                    {"ChkAudioAlert", u"Audio alert"},
                    {"ChkIndMobAlert", u"Mobile Alert"},
                    {"FrmFileSelect", u"File to play at prayer time:"},
                    {"TxtPath", u""},
                    {"LblBrowseLink", u"Browse"},
                    {"LblPrayerName", u""}});
    for (const char* const box : {"ChkAlertMain", "ChkSilAlert", "ChkAudioAlert", "ChkIndMobAlert"}) {
        EXPECT_FALSE(IsTicked(box)) << box;
        EXPECT_EQ(IsLive(box), qstrcmp(box, "ChkAlertMain") == 0) << box;
    }
    EXPECT_FALSE(IsLive("FrmFileSelect"));
    // Enabled itself; greyed by its frame.
    EXPECT_TRUE(Widget("TxtPath").isEnabledTo(&Widget("FrmFileSelect")));
    EXPECT_TRUE(Widget("LblBrowseLink").isEnabledTo(&Widget("FrmFileSelect")));
    EXPECT_TRUE(Find<QLabel>("LblPrayerName").font().bold());
    EXPECT_TRUE(Widget("FrmPrayer").isHidden());
}

TEST_F(PrayerPageTest, page_namesItsPrayerAndReadsItsElement)
{
    for (const Prayer& prayer : kPrayers) {
        SCOPED_TRACE(prayer.name.data());
        WriteChanged(
            Element(prayer.element.data(), prayer.element == QLatin1String("shuruq") ? kOff : kOn),
            Element(prayer.element.data(),
                    R"(enabled="true" popup="false" mobil="true" play="true" audioFile="C:\no such.mp3")"));
        const QByteArray before = ReadSettings();
        Open(prayer.tab);
        EXPECT_EQ(Find<QLabel>("LblPrayerName").text(), prayer.caption);
        EXPECT_TRUE(IsTicked("ChkAlertMain"));
        EXPECT_FALSE(IsTicked("ChkSilAlert"));
        EXPECT_TRUE(IsTicked("ChkAudioAlert"));
        // Grey, because mobile alerts are not confirmed, but still with the stored tick.
        EXPECT_TRUE(IsTicked("ChkIndMobAlert"));
        EXPECT_FALSE(IsLive("ChkIndMobAlert"));
        EXPECT_EQ(TextOf("TxtPath"), u"C:\\no such.mp3");
        EXPECT_EQ(ReadSettings(), before);
        dialog->Unload();
    }
}

TEST_F(PrayerPageTest, clickOrKeystroke_storesItsAttributeOnThisPrayerOnly)
{
    const struct
    {
        const char* control;
        const char* attribute;
        const char16_t* before;
    } rows[] = {{"ChkAlertMain", "enabled", u"true"},
                {"ChkSilAlert", "popup", u"true"},
                {"ChkAudioAlert", "play", u"false"},
                {"ChkIndMobAlert", "mobil", u"false"},
                {"TxtPath", "audioFile", u""}};
    for (const Prayer& prayer : kPrayers) {
        WriteSettings(SettingsWith({{"mobileEnabled", "true"}, {"mobileConfirm", "1"}, {"enabled", "true"}}));
        Open(prayer.tab);
        ChangePlaceInTheFile();
        for (const auto& [control, attribute, before] : rows) {
            SCOPED_TRACE(std::string(prayer.name.data()) + ' ' + control);
            const bool isPath = qstrcmp(control, "TxtPath") == 0;
            const bool wasTicked = !isPath && IsTicked(control);
            Forget();
            if (isPath) {
                QTest::keyClicks(&Widget(control), QStringLiteral("a.w"));
                EXPECT_EQ(SavedValues(attribute, prayer.element.data()), u"a|a.|a.w");
            } else {
                Click(control);
                EXPECT_EQ(SavedValues(attribute, prayer.element.data()), wasTicked ? u"false" : u"true");
                EXPECT_EQ(files.loads, 1);
            }
            for (const Prayer& other : kPrayers) {
                EXPECT_EQ(Stored(attribute, other.element.data()) == before, other.tab != prayer.tab)
                    << other.element.data();
            }
            if (!isPath) {
                Forget();
                Click(control);
                EXPECT_EQ(SavedValues(attribute, prayer.element.data()), before);
                EXPECT_EQ(files.loads, 1);
            }
            ExpectChangedPlace();
        }
        dialog->Unload();
    }
}

TEST_F(PrayerPageTest, storedBooleans_areComparedExactly)
{
    WriteIsha(R"(enabled="True" popup="TRUE" mobil="1" play=" true")");
    Open(8);
    for (const char* const box : {"ChkAlertMain", "ChkSilAlert", "ChkAudioAlert", "ChkIndMobAlert"}) {
        EXPECT_FALSE(IsTicked(box)) << box;
    }
    EXPECT_EQ(TextOf("TxtPath"), QString());
}

TEST_F(PrayerPageTest, subOptions_areLiveWhileTheAlertIsOn)
{
    Open(8);
    ExpectSubOptionsLive(true);
    dialog->SelectTab(4);
    ExpectSubOptionsLive(false);
    Click("ChkAlertMain");
    ExpectSubOptionsLive(true);
    Click("ChkAlertMain");
    ExpectSubOptionsLive(false);
}

TEST_F(PrayerPageTest, mobileAlert_needsEnabledAndConfirmed_andGivesTheReasonWhileGrey)
{
    const QString notEnabled =
        QStringLiteral("Tick \"Enable Mobile Alerts\" on the Mobile Alert page first.");
    const QString notConfirmed =
        QStringLiteral("Register your mobile device on the Mobile Alert page first.");
    const struct
    {
        const char* enabled;
        const char* confirm;
        QString reason;
    } rows[] = {{"true", "1", QString()},   {"true", "0", notConfirmed},    {"true", "2", notConfirmed},
                {"true", "", notConfirmed}, {"true", "true", notConfirmed}, {"false", "1", notEnabled},
                {"True", "1", notEnabled},  {"false", "0", notEnabled}};
    for (const auto& [enabled, confirm, reason] : rows) {
        SCOPED_TRACE(testing::Message() << enabled << ' ' << confirm);
        WriteSettings(SettingsWith({{"mobileEnabled", enabled}, {"mobileConfirm", confirm}}));
        Open(3);
        ExpectMobileAlert(reason);
        Click("ChkAlertMain");
        ExpectMobileAlert(QStringLiteral("Tick \"Alert on\" first."));
        Click("ChkAlertMain");
        ExpectMobileAlert(reason);
        // The load of a page does not depend on "Alert on".
        Click("ChkAlertMain");
        dialog->SelectTab(3);
        ExpectMobileAlert(reason);
        dialog->Unload();
    }
}

TEST_F(PrayerPageTest, sameEnabledOnTheNextPrayer_leavesTheGreyStateAsItWas)
{
    // All controls are built grey, and a prayer whose alert is off raises no Click, which would update them.
    Open(4);
    ExpectSubOptionsLive(false);
    dialog->SelectTab(3);
    ExpectSubOptionsLive(true);
    Forget();
    dialog->SelectTab(5);
    ExpectSubOptionsLive(true);
    EXPECT_EQ(files.loads, 0);
    dialog->SelectTab(4);
    ExpectSubOptionsLive(false);
}

TEST_F(PrayerPageTest, untickedAlert_keepsItsSubOptions)
{
    WriteIsha(R"(enabled="true" popup="true" mobil="true" play="true" audioFile="a.wav")");
    Open(8);
    Click("ChkAlertMain");
    EXPECT_EQ(Stored("enabled", "isha"), u"false");
    for (const char* const attribute : {"popup", "mobil", "play"}) {
        EXPECT_EQ(Stored(QLatin1String(attribute), "isha"), u"true") << attribute;
    }
    EXPECT_EQ(Stored("audioFile", "isha"), u"a.wav");
    Click("ChkAlertMain");
    EXPECT_TRUE(IsTicked("ChkSilAlert"));
    EXPECT_TRUE(IsTicked("ChkAudioAlert"));
    EXPECT_EQ(TextOf("TxtPath"), u"a.wav");
}

TEST_F(PrayerPageTest, anotherPrayer_takesNothingFromTheOneBefore)
{
    WriteSettings(SettingsWith({{"enabled", "true"}}));
    Open(3);
    QTest::keyClicks(&Widget("TxtPath"), QStringLiteral("fajr.wav"));
    Forget();
    Click("LblShuruq");
    EXPECT_EQ(TextOf("TxtPath"), QString());
    EXPECT_EQ(Saves(), 0U);
    EXPECT_EQ(Stored("audioFile", "shuruq"), QString());
    Click("LblFajr");
    EXPECT_EQ(TextOf("TxtPath"), u"fajr.wav");
}

TEST_F(PrayerPageTest, missingElement_readsClearAndTakesNothing)
{
    WriteChanged(Element("asr", kOn), QString());
    Open(6);
    EXPECT_FALSE(IsTicked("ChkAlertMain"));
    EXPECT_FALSE(IsTicked("ChkSilAlert"));
    Click("ChkAlertMain");
    EXPECT_TRUE(IsOpen());
    Click("ChkSilAlert");
    QTest::keyClicks(&Widget("TxtPath"), QStringLiteral("x"));
    EXPECT_TRUE(IsOpen());
    EXPECT_FALSE(ReadSettings().contains("<asr"));
}

TEST_F(PrayerPageTest, controlsSetByCodeOnAnotherPage_writeNothing)
{
    Open(3);
    dialog->SelectTab(1);
    Forget();
    Find<CheckBox>("ChkAlertMain").SetValue(0);
    Find<CheckBox>("ChkAudioAlert").SetValue(1);
    Box("TxtPath").SetText(QStringLiteral("x"));
    EXPECT_EQ(Saves(), 0U);
    // The box greys its sub-options on every page.
    ExpectSubOptionsLive(false);
    EXPECT_EQ(files.loads, 1);
}

TEST_F(PrayerPageTest, pathWithMarkupAndOtherScripts_comesBackAsTyped)
{
    const QString path = QStringLiteral("C:\\a & b\\<\"\u0641\u062c\u0631\">.mp3");
    Open(3);
    Paste("TxtPath", path);
    EXPECT_EQ(Stored("audioFile", "fajr"), path);
    dialog->SelectTab(5);
    dialog->SelectTab(3);
    EXPECT_EQ(TextOf("TxtPath"), path);
}

TEST_F(PrayerPageTest, browse_closesTheDialogSilently_whereItIsLive)
{
    for (const bool byKey : {false, true}) {
        Open(3);
        const QByteArray before = ReadSettings();
        const LinkLabel& browse = Find<LinkLabel>("LblBrowseLink");
        EXPECT_TRUE(browse.isEnabled());
        byKey ? Press("LblBrowseLink", QStringLiteral("Return")) : Click("LblBrowseLink");
        ExpectHandedOver();
        // The window is destroyed later, by the event loop.
        EXPECT_FALSE(browse.isEnabled());
        EXPECT_EQ(Saves(), 0U);
        EXPECT_EQ(ReadSettings(), before);
        main.calls.clear();
    }
    Open(4);
    QTest::mouseClick(&Widget("LblBrowseLink"), Qt::LeftButton);
    EXPECT_TRUE(IsOpen());
}
