// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlertsFixture.h"

namespace {

const QString kOn =
    QStringLiteral(R"(enabled="true" popup="true" mobil="true" play="true" audioFile="a.mp3")");
const QString kOff =
    QStringLiteral(R"(enabled="false" popup="true" mobil="true" play="true" audioFile="a.mp3")");
const QString kBare =
    QStringLiteral(R"(enabled="true" popup="false" mobil="false" play="false" audioFile="a.mp3")");

class AlertDispatchTest : public AlertsFixture
{
protected:
    void ExpectNothingButAPopup()
    {
        EXPECT_EQ(TakeLog(), u"");
        EXPECT_EQ(platform.player.log, QStringList());
        EXPECT_EQ(platform.http.requests, QStringList());
    }
    void ExpectNothingHappened()
    {
        ExpectNothingButAPopup();
        EXPECT_EQ(Popup(), nullptr);
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(main->Variables().ActiveForm, u"FrmMain");
    }
    /// Ends the current alert.
    void Forget()
    {
        forms.Unload(FrmPopup::kName);
        log.clear();
        platform.player.log.clear();
        platform.http.requests.clear();
    }
};

TEST_F(AlertDispatchTest, eachSlot_followsTheSettingsOfItsPrayer)
{
    const struct
    {
        std::int16_t slot;
        const char16_t* element;
        QString asrMethode;
        int pno;
        QString name;
        QString time;
    } rows[] = {
        {1, u"fajr", QStringLiteral("shafi"), 1, QStringLiteral("Fajr"), QStringLiteral("5:00")},
        {2, u"shuruq", QStringLiteral("shafi"), 2, QStringLiteral("Shuruq"), QStringLiteral("6:30")},
        {5, u"duhr", QStringLiteral("shafi"), 3, QStringLiteral("Duhr"), QStringLiteral("12:30")},
        {6, u"asr", QStringLiteral("shafi"), 4, QStringLiteral("Asr (Shafi)"), QStringLiteral("15:45")},
        {7, u"asr", QStringLiteral("hanafi"), 4, QStringLiteral("Asr (Hanafi)"), QStringLiteral("16:40")},
        {9, u"maghrib", QStringLiteral("shafi"), 5, QStringLiteral("Maghrib"), QStringLiteral("18:42")},
        {10, u"isha", QStringLiteral("hanafi"), 6, QStringLiteral("Isha"), QStringLiteral("20:15")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.slot);
        SetAsrMethod(row.asrMethode);
        SetAllPrayers(kOff);
        SetPrayer(row.element, kOn);
        dispatch.Alarm(row.slot);
        EXPECT_EQ(TakeLog(), QStringLiteral("popup Prayer Time:\r\n%1: %2|request %3 Normal 0 %2|"
                                            "url a.mp3|link|ad")
                                 .arg(row.name, row.time, QString::number(row.pno)));
        EXPECT_EQ(platform.http.requests.size(), 1);
        EXPECT_EQ(main->Variables().ActiveForm, u"FrmPopup");
        Forget();
        // The warning depends on "enabled" only.
        for (const QString& attributes : {kOn, kBare}) {
            SetPrayer(row.element, attributes);
            dispatch.AdvAlarm(row.slot);
            ASSERT_TRUE(PopupIsUp());
            EXPECT_EQ(TextOf("Label1"), QStringLiteral("Advanced Alert\r\n%1 %2").arg(row.name, row.time));
            ExpectNothingButAPopup();
            Forget();
        }
        SetAllPrayers(kOn);
        SetPrayer(row.element, kOff);
        dispatch.Alarm(row.slot);
        dispatch.AdvAlarm(row.slot);
        ExpectNothingHappened();
    }
}

TEST_F(AlertDispatchTest, slotThatRaisesNothing_isPassedOver)
{
    SetAllPrayers(kOn);
    for (const int number : {3, 4, 8, 0, 11, -1, 32767, -32768}) {
        const auto slot = static_cast<std::int16_t>(number);
        SCOPED_TRACE(slot);
        dispatch.Alarm(slot);
        dispatch.AdvAlarm(slot);
        ExpectNothingHappened();
    }
}

TEST_F(AlertDispatchTest, gate_anyOtherActiveForm_dropsBothForGood)
{
    SetAllPrayers(kOn);
    SetUpTimer(-1);
    for (const char* const form :
         {"FrmAlerts", "FrmLocation", "FrmNewLoc", "FrmPopup", "FrmWait", "", "frmmain"}) {
        SCOPED_TRACE(form);
        main->Variables().ActiveForm = QString::fromLatin1(form);
        TickAt(18, 42);
        TickAt(18, 32);
        EXPECT_EQ(Popup(), nullptr);
        main->Variables().ActiveForm = QStringLiteral("FrmMain");
        TickAt(18, 42, 1);
        TickAt(18, 43);
        ExpectNothingHappened();
    }
}

TEST_F(AlertDispatchTest, enabled_anythingButTrue_isOff)
{
    for (const char* const enabled : {R"(enabled="True")", R"(enabled="TRUE")", R"(enabled=" true")",
                                      R"(enabled="-1")", R"(enabled="")", ""}) {
        SCOPED_TRACE(enabled);
        SetPrayer(u"maghrib", QLatin1String(enabled) + QStringLiteral(R"( popup="true" play="true")"));
        dispatch.Alarm(9);
        dispatch.AdvAlarm(9);
        ExpectNothingHappened();
    }
}

TEST_F(AlertDispatchTest, alarm_everyCombinationOfItsSettings_firesWhatTheyAsk)
{
    const auto word = [](bool on) { return on ? QStringLiteral("true") : QStringLiteral("false"); };
    for (int bits = 0; bits < 16; ++bits) {
        SCOPED_TRACE(bits);
        const bool popup = (bits & 1) != 0;
        const bool mobil = (bits & 2) != 0;
        const bool play = (bits & 4) != 0;
        const bool confirmed = (bits & 8) != 0;
        SetPrayer(u"isha",
                  QStringLiteral(R"(enabled="true" popup="%1" mobil="%2" play="%3" audioFile="a.mp3")")
                      .arg(word(popup), word(mobil), word(play)));
        SetAlertsAttribute(u"mobileConfirm", confirmed ? u"1" : u"0");
        dispatch.Alarm(10);
        EXPECT_EQ(TakeLog(), QStringLiteral("%1|request 6 %2 %3 20:15%4|ad")
                                 .arg(popup ? u"popup Prayer Time:\r\nIsha: 20:15" : u"no popup",
                                      play ? u"Normal" : u"Quite", mobil && confirmed ? u"1" : u"0",
                                      play ? u"|url a.mp3|link" : u""));
        forms.Unload(FrmPopup::kName);
    }
}

TEST_F(AlertDispatchTest, alarm_missingOrCapitalPopupMobilAndPlay_countAsOff)
{
    SetAlertsAttribute(u"mobileConfirm", u"1");
    for (const auto& attributes :
         {QStringLiteral(R"(enabled="true")"),
          QStringLiteral(R"(enabled="true" popup="True" mobil="True" play="True" audioFile="a.mp3")")}) {
        SetPrayer(u"isha", attributes);
        dispatch.Alarm(10);
        EXPECT_EQ(TakeLog(), u"no popup|request 6 Quite 0 20:15|ad");
    }
}

TEST_F(AlertDispatchTest, alarm_mobileConfirmIsOneOrNothing)
{
    SetPrayer(u"isha", QStringLiteral(R"(enabled="true" mobil="true")"));
    for (const char16_t* const confirm : {u"", u"0", u"true", u"01", u"1 ", u"2"}) {
        SetAlertsAttribute(u"mobileConfirm", confirm);
        dispatch.Alarm(10);
        EXPECT_EQ(TakeLog(), u"no popup|request 6 Quite 0 20:15|ad")
            << QString::fromUtf16(confirm).toStdString();
    }
    settings.remove(QStringLiteral(" mobileConfirm=\"2\""));
    WriteSettings(settings);
    dispatch.Alarm(10);
    EXPECT_EQ(TakeLog(), u"no popup|request 6 Quite 0 20:15|ad") << "absent";
}

TEST_F(AlertDispatchTest, alarm_audioFileGoesAsItStands)
{
    for (const auto& path : {QString(), QStringLiteral(" C:\\My Sounds\\Azan 1%20.mp3 "),
                             QStringLiteral("/home/ü/#1?.ogg"), QStringLiteral("http://a/b.mp3")}) {
        SetPrayer(u"duhr", QStringLiteral(R"(enabled="true" play="true" audioFile="%1")").arg(path));
        dispatch.Alarm(5);
        EXPECT_TRUE(TakeLog().endsWith(QStringLiteral("|url %1|link|ad").arg(path)))
            << "the link is enabled although nothing may play";
    }
}

TEST_F(AlertDispatchTest, hourMode_handlersAskDifferently_requestIsAlwaysIn24)
{
    const struct
    {
        const char* hourMode;
        QString alarm;
        QString advance;
    } rows[] = {{"12", QStringLiteral("6:42 PM"), QStringLiteral("6:42 PM")},
                {"24", QStringLiteral("18:42"), QStringLiteral("18:42")},
                {"13", QStringLiteral("18:42"), QStringLiteral("6:42 PM")},
                {"", QStringLiteral("18:42"), QStringLiteral("6:42 PM")},
                {"12 ", QStringLiteral("18:42"), QStringLiteral("6:42 PM")}};
    SetPrayer(u"maghrib", kOn);
    for (const auto& [hourMode, alarm, advance] : rows) {
        SCOPED_TRACE(hourMode);
        main->Variables().Settings.HourMode = QString::fromLatin1(hourMode);
        dispatch.Alarm(9);
        EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nMaghrib: ") + alarm);
        EXPECT_TRUE(TakeLog().contains(QStringLiteral("|request 5 Normal 0 18:42|")));
        forms.Unload(FrmPopup::kName);
        dispatch.AdvAlarm(9);
        EXPECT_EQ(TextOf("Label1"), QStringLiteral("Advanced Alert\r\nMaghrib ") + advance);
        forms.Unload(FrmPopup::kName);
    }
}

// Intended: the alarm reads the copy in memory, the warning reads the file.
TEST_F(AlertDispatchTest, asr_onlyTheSlotOfTheMethodFires)
{
    const struct
    {
        const char* memory;
        const char* file;
        int alarm;
        int warning;
    } rows[] = {{"shafi", "shafi", 6, 6},
                {"hanafi", "hanafi", 7, 7},
                {"shafi", "hanafi", 6, 7},
                {"Shafi", "Shafi", 0, 0},
                {"", "", 0, 0}};
    SetPrayer(u"asr", kOn);
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.memory) + ' ' + row.file);
        SetAsrMethod(QString::fromLatin1(row.file));
        main->Variables().Settings.AsrMethod = QString::fromLatin1(row.memory);
        for (const int slot : {6, 7}) {
            dispatch.Alarm(static_cast<std::int16_t>(slot));
            EXPECT_EQ(PopupIsUp(), slot == row.alarm) << slot;
            EXPECT_EQ(TakeLog().isEmpty(), slot != row.alarm) << slot;
            forms.Unload(FrmPopup::kName);
            dispatch.AdvAlarm(static_cast<std::int16_t>(slot));
            EXPECT_EQ(PopupIsUp(), slot == row.warning) << slot << " in advance";
            forms.Unload(FrmPopup::kName);
        }
    }
}

TEST_F(AlertDispatchTest, settingsFileMissingDamagedOrEmpty_endsSilently)
{
    ASSERT_TRUE(QFile::remove(QStringLiteral("settings.xml")));
    dispatch.Alarm(1);
    dispatch.AdvAlarm(1);
    ExpectNothingHappened();
    for (const auto& text : {QString(), QStringLiteral("<root><alerts>"), QStringLiteral("<root/>")}) {
        WriteSettings(text);
        dispatch.Alarm(1);
        dispatch.AdvAlarm(1);
        ExpectNothingHappened();
    }
}

TEST_F(AlertDispatchTest, service_anyReply_soundAndAdFollow)
{
    SetPrayer(u"fajr", kOn);
    const QByteArray replies[] = {"<root result=\"1\"/>", "<root result=\"0\"/>", "not xml", "",
                                  "unreachable"};
    for (const QByteArray& reply : replies) {
        platform.http.replies = {{QStringLiteral("prayerCall"), reply}};
        if (reply == "unreachable") {
            platform.http.replies.clear();
        }
        dispatch.Alarm(1);
        EXPECT_TRUE(TakeLog().endsWith(QStringLiteral("|url a.mp3|link|ad"))) << reply.constData();
        forms.Unload(FrmPopup::kName);
    }
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_TRUE(platform.http.probes.isEmpty()) << "no test of the network";
}

TEST_F(AlertDispatchTest, secondAlarmInsideTheWait_firesUnlessThePopupIsUp)
{
    for (const bool popup : {false, true}) {
        SetAllPrayers(popup ? kOn : kBare);
        platform.http.whileWaiting = [&] { TickAt(20, 15); };
        TickAt(5, 0);
        EXPECT_EQ(TakeLog().count(QStringLiteral("request")), popup ? 1 : 2);
    }
}

TEST_F(AlertDispatchTest, mainWindowClosedDuringTheWait_endsThere)
{
    SetPrayer(u"fajr", QStringLiteral(R"(enabled="true" play="true" audioFile="a.mp3")"));
    platform.http.whileWaiting = [&] { forms.Unload(QStringLiteral("FrmMain")); };
    dispatch.Alarm(1);
    EXPECT_EQ(TakeLog(), u"no popup|request 1 Normal 0 5:00") << "no sound, no link, no ad";
    EXPECT_EQ(platform.player.log, QStringList());
    dispatch.Alarm(1);
    dispatch.AdvAlarm(1);
    EXPECT_EQ(TakeLog(), u"");
    EXPECT_EQ(forms.Loaded(QStringLiteral("FrmMain")), nullptr) << "nothing brings it back";
}

TEST_F(AlertDispatchTest, mainWindow_keepsItsStateAndItsFocusIsNotAskedFor)
{
    SetAllPrayers(kOn);
    ASSERT_FALSE(main->isVisible());
    dispatch.Alarm(9);
    EXPECT_FALSE(main->isVisible());
    forms.Unload(FrmPopup::kName);
    dispatch.AdvAlarm(9);
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(main->focusTaken, 0);
}

} // namespace
