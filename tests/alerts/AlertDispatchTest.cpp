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
    void ExpectNothingHappened()
    {
        EXPECT_EQ(TakeLog(), QStringList());
        EXPECT_EQ(platform.player.log, QStringList());
        EXPECT_EQ(platform.http.requests, QStringList());
        EXPECT_EQ(Popup(), nullptr);
        EXPECT_TRUE(platform.boxes.boxes.empty());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmMain"));
    }
};

struct SlotRow
{
    const char* title;
    std::int16_t slot;
    const char* element;
    const char* asrMethode;
    int pno;
    const char* name;
    const char* time;
};

void PrintTo(const SlotRow& row, std::ostream* stream)
{
    *stream << row.title;
}

const SlotRow kSlots[] = {
    {"fajr", 1, "fajr", "shafi", 1, "Fajr", "5:00"},
    {"shuruq", 2, "shuruq", "shafi", 2, "Shuruq", "6:30"},
    {"duhr", 5, "duhr", "shafi", 3, "Duhr", "12:30"},
    {"asrShafi", 6, "asr", "shafi", 4, "Asr (Shafi)", "15:45"},
    {"asrHanafi", 7, "asr", "hanafi", 4, "Asr (Hanafi)", "16:40"},
    {"maghrib", 9, "maghrib", "shafi", 5, "Maghrib", "18:42"},
    {"isha", 10, "isha", "hanafi", 6, "Isha", "20:15"},
};

class AlertDispatchSlot : public AlertDispatchTest, public testing::WithParamInterface<SlotRow>
{
protected:
    void EnableOnlyMine()
    {
        SetAllPrayers(kOff);
        SetPrayer(QString::fromLatin1(GetParam().element), kOn);
        main->Variables().Settings.AsrMethod = QString::fromLatin1(GetParam().asrMethode);
        SetAlertsAttribute(QStringLiteral("asrMethode"), QString::fromLatin1(GetParam().asrMethode));
    }
    void EnableAllButMine()
    {
        EnableOnlyMine();
        SetAllPrayers(kOn);
        SetPrayer(QString::fromLatin1(GetParam().element), kOff);
    }
};

TEST_P(AlertDispatchSlot, alarm_enabled_firesPopupRequestSoundAndAdInThisOrder)
{
    EnableOnlyMine();
    dispatch.Alarm(GetParam().slot);
    const QString name = QString::fromLatin1(GetParam().name);
    const QString time = QString::fromLatin1(GetParam().time);
    EXPECT_EQ(TakeLog(),
              (QStringList{QStringLiteral("popup Prayer Time:\r\n%1: %2").arg(name, time),
                           QStringLiteral("request %1 Normal 0 %2").arg(GetParam().pno).arg(time),
                           QStringLiteral("url a.mp3"), QStringLiteral("link"), QStringLiteral("ad")}));
    EXPECT_EQ(platform.http.requests.size(), 1);
    EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmPopup"));
}

TEST_P(AlertDispatchSlot, alarm_disabled_firesNothing)
{
    EnableAllButMine();
    dispatch.Alarm(GetParam().slot);
    ExpectNothingHappened();
}

TEST_P(AlertDispatchSlot, advAlarm_enabled_showsItsPopupOnly)
{
    EnableOnlyMine();
    SetPrayer(QString::fromLatin1(GetParam().element), kBare);
    dispatch.AdvAlarm(GetParam().slot);
    ASSERT_TRUE(PopupIsUp()) << "whatever the popup attribute says";
    EXPECT_EQ(TextOf("Label1"),
              QStringLiteral("Advanced Alert\r\n%1 %2")
                  .arg(QString::fromLatin1(GetParam().name), QString::fromLatin1(GetParam().time)));
    EXPECT_EQ(TakeLog(), QStringList());
    EXPECT_EQ(platform.player.log, QStringList());
    EXPECT_EQ(platform.http.requests, QStringList());
}

TEST_P(AlertDispatchSlot, advAlarm_withEverythingOn_stillShowsItsPopupOnly)
{
    EnableOnlyMine();
    dispatch.AdvAlarm(GetParam().slot);
    EXPECT_TRUE(PopupIsUp());
    EXPECT_EQ(TakeLog(), QStringList());
    EXPECT_EQ(platform.player.log, QStringList());
    EXPECT_EQ(platform.http.requests, QStringList());
}

TEST_P(AlertDispatchSlot, advAlarm_disabled_firesNothing)
{
    EnableAllButMine();
    dispatch.AdvAlarm(GetParam().slot);
    ExpectNothingHappened();
}

INSTANTIATE_TEST_SUITE_P(Slots, AlertDispatchSlot, testing::ValuesIn(kSlots),
                         [](const auto& row) { return std::string(row.param.title); });

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

struct EnabledRow
{
    const char* title;
    QString attributes;
};

class AlertDispatchEnabled : public AlertDispatchTest, public testing::WithParamInterface<EnabledRow>
{
};

TEST_P(AlertDispatchEnabled, anythingButTrue_isOff)
{
    SetPrayer(QStringLiteral("maghrib"), GetParam().attributes);
    dispatch.Alarm(9);
    dispatch.AdvAlarm(9);
    ExpectNothingHappened();
}

const EnabledRow kEnabledRows[] = {
    {"capital", QStringLiteral(R"(enabled="True" popup="true" play="true")")},
    {"upper", QStringLiteral(R"(enabled="TRUE" popup="true" play="true")")},
    {"blank", QStringLiteral(R"(enabled=" true" popup="true" play="true")")},
    {"number", QStringLiteral(R"(enabled="-1" popup="true" play="true")")},
    {"empty", QStringLiteral(R"(enabled="" popup="true" play="true")")},
    {"absent", QStringLiteral(R"(popup="true" play="true")")},
};
INSTANTIATE_TEST_SUITE_P(Values, AlertDispatchEnabled, testing::ValuesIn(kEnabledRows),
                         [](const auto& row) { return std::string(row.param.title); });

TEST_F(AlertDispatchTest, alarm_everyCombinationOfItsSettings_firesWhatTheyAsk)
{
    const auto word = [](bool on) { return on ? QStringLiteral("true") : QStringLiteral("false"); };
    for (int bits = 0; bits < 16; ++bits) {
        SCOPED_TRACE(bits);
        const bool popup = (bits & 1) != 0;
        const bool mobil = (bits & 2) != 0;
        const bool play = (bits & 4) != 0;
        const bool confirmed = (bits & 8) != 0;
        SetPrayer(QStringLiteral("isha"),
                  QStringLiteral(R"(enabled="true" popup="%1" mobil="%2" play="%3" audioFile="a.mp3")")
                      .arg(word(popup), word(mobil), word(play)));
        SetAlertsAttribute(QStringLiteral("mobileConfirm"),
                           confirmed ? QStringLiteral("1") : QStringLiteral("0"));
        dispatch.Alarm(10);
        QStringList expected;
        expected << (popup ? QStringLiteral("popup Prayer Time:\r\nIsha: 20:15") : QStringLiteral("no popup"))
                 << QStringLiteral("request 6 %1 %2 20:15")
                        .arg(play ? QStringLiteral("Normal") : QStringLiteral("Quite"),
                             mobil && confirmed ? QStringLiteral("1") : QStringLiteral("0"));
        if (play) {
            expected << QStringLiteral("url a.mp3") << QStringLiteral("link");
        }
        expected << QStringLiteral("ad");
        EXPECT_EQ(TakeLog(), expected);
        forms.Unload(FrmPopup::kName);
    }
}

TEST_F(AlertDispatchTest, alarm_missingOrCapitalPopupMobilAndPlay_countAsOff)
{
    for (const auto& attributes :
         {QStringLiteral(R"(enabled="true")"),
          QStringLiteral(R"(enabled="true" popup="True" mobil="True" play="True" audioFile="a.mp3")")}) {
        SetPrayer(QStringLiteral("isha"), attributes);
        SetAlertsAttribute(QStringLiteral("mobileConfirm"), QStringLiteral("1"));
        dispatch.Alarm(10);
        EXPECT_EQ(TakeLog(), (QStringList{QStringLiteral("no popup"),
                                          QStringLiteral("request 6 Quite 0 20:15"), QStringLiteral("ad")}));
    }
}

TEST_F(AlertDispatchTest, alarm_mobileConfirmIsOneOrNothing)
{
    SetPrayer(QStringLiteral("isha"), QStringLiteral(R"(enabled="true" mobil="true")"));
    for (const char* const confirm : {"", "0", "true", "01", "1 ", "2"}) {
        SetAlertsAttribute(QStringLiteral("mobileConfirm"), QString::fromLatin1(confirm));
        dispatch.Alarm(10);
        EXPECT_EQ(TakeLog().at(1), QStringLiteral("request 6 Quite 0 20:15")) << confirm;
    }
    settings.remove(QStringLiteral(" mobileConfirm=\"2\""));
    WriteSettings(settings);
    dispatch.Alarm(10);
    EXPECT_EQ(TakeLog().at(1), QStringLiteral("request 6 Quite 0 20:15")) << "absent";
}

TEST_F(AlertDispatchTest, alarm_audioFileGoesAsItStands)
{
    for (const auto& path : {QString(), QStringLiteral(" C:\\My Sounds\\Azan 1%20.mp3 "),
                             QStringLiteral("/home/ü/#1?.ogg"), QStringLiteral("http://a/b.mp3")}) {
        SetPrayer(QStringLiteral("duhr"),
                  QStringLiteral(R"(enabled="true" play="true" audioFile="%1")").arg(path));
        dispatch.Alarm(5);
        EXPECT_EQ(TakeLog().mid(2),
                  (QStringList{QStringLiteral("url ") + path, QStringLiteral("link"), QStringLiteral("ad")}))
            << "the link is enabled although nothing may play";
    }
}

struct HourRow
{
    const char* title;
    const char* hourMode;
    const char* alarm;
    const char* advance;
};

class AlertDispatchHourMode : public AlertDispatchTest, public testing::WithParamInterface<HourRow>
{
};

TEST_P(AlertDispatchHourMode, handlersAskDifferently_requestIsAlwaysIn24)
{
    SetPrayer(QStringLiteral("maghrib"), kOn);
    main->Variables().Settings.HourMode = QString::fromLatin1(GetParam().hourMode);
    dispatch.Alarm(9);
    EXPECT_EQ(TextOf("Label1"),
              QStringLiteral("Prayer Time:\r\nMaghrib: ") + QLatin1String(GetParam().alarm));
    EXPECT_EQ(TakeLog().at(1), QStringLiteral("request 5 Normal 0 18:42"));
    forms.Unload(FrmPopup::kName);
    dispatch.AdvAlarm(9);
    EXPECT_EQ(TextOf("Label1"),
              QStringLiteral("Advanced Alert\r\nMaghrib ") + QLatin1String(GetParam().advance));
}

const HourRow kHourRows[] = {
    {"twelve", "12", "6:42 PM", "6:42 PM"}, {"twentyFour", "24", "18:42", "18:42"},
    {"third", "13", "18:42", "6:42 PM"},    {"empty", "", "18:42", "6:42 PM"},
    {"blank", "12 ", "18:42", "6:42 PM"},
};
INSTANTIATE_TEST_SUITE_P(Modes, AlertDispatchHourMode, testing::ValuesIn(kHourRows),
                         [](const auto& row) { return std::string(row.param.title); });

TEST_F(AlertDispatchTest, asr_onlyTheSlotOfTheMethodFires)
{
    const struct
    {
        const char* method;
        bool shafi;
        bool hanafi;
    } rows[] = {{"shafi", true, false}, {"hanafi", false, true}, {"Shafi", false, false}, {"", false, false}};
    SetPrayer(QStringLiteral("asr"), kOn);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.method);
        main->Variables().Settings.AsrMethod = QString::fromLatin1(row.method);
        SetAlertsAttribute(QStringLiteral("asrMethode"), QString::fromLatin1(row.method));
        for (const auto& [slot, fires] : {std::pair{6, row.shafi}, std::pair{7, row.hanafi}}) {
            dispatch.Alarm(static_cast<std::int16_t>(slot));
            EXPECT_EQ(PopupIsUp(), fires) << slot;
            EXPECT_EQ(TakeLog().isEmpty(), !fires) << slot;
            forms.Unload(FrmPopup::kName);
            dispatch.AdvAlarm(static_cast<std::int16_t>(slot));
            EXPECT_EQ(PopupIsUp(), fires) << slot << " in advance";
            forms.Unload(FrmPopup::kName);
        }
    }
}

TEST_F(AlertDispatchTest, asr_alarmAsksMemory_advAlarmAsksTheFile)
{
    SetPrayer(QStringLiteral("asr"), kOn);
    main->Variables().Settings.AsrMethod = QStringLiteral("shafi");
    SetAlertsAttribute(QStringLiteral("asrMethode"), QStringLiteral("hanafi"));
    dispatch.Alarm(7);
    dispatch.AdvAlarm(6);
    ExpectNothingHappened();
    dispatch.Alarm(6);
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Prayer Time:\r\nAsr (Shafi): 15:45"));
    forms.Unload(FrmPopup::kName);
    dispatch.AdvAlarm(7);
    EXPECT_EQ(TextOf("Label1"), QStringLiteral("Advanced Alert\r\nAsr (Hanafi) 16:40"));
}

TEST_F(AlertDispatchTest, settings_areReadAfreshAtEachEvent)
{
    SetPrayer(QStringLiteral("fajr"), kOff);
    dispatch.Alarm(1);
    ExpectNothingHappened();
    SetPrayer(QStringLiteral("fajr"), kOn);
    dispatch.Alarm(1);
    EXPECT_TRUE(PopupIsUp());
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

TEST_F(AlertDispatchTest, service_whateverItAnswers_soundAndAdFollow)
{
    SetPrayer(QStringLiteral("fajr"), kOn);
    const QByteArray replies[] = {"<root result=\"1\"/>", "<root result=\"0\"/>", "not xml", ""};
    for (const QByteArray& reply : replies) {
        platform.http.replies = {{QStringLiteral("prayerCall"), reply}};
        dispatch.Alarm(1);
        EXPECT_EQ(TakeLog().mid(2),
                  (QStringList{QStringLiteral("url a.mp3"), QStringLiteral("link"), QStringLiteral("ad")}));
        forms.Unload(FrmPopup::kName);
    }
    platform.http.replies.clear();
    dispatch.Alarm(1);
    EXPECT_EQ(TakeLog().size(), 5) << "unreachable";
    EXPECT_TRUE(platform.boxes.boxes.empty());
    EXPECT_TRUE(platform.http.probes.isEmpty()) << "no test of the network";
}

TEST_F(AlertDispatchTest, sound_startsAfterTheReply_popupIsUpBeforeIt)
{
    SetPrayer(QStringLiteral("fajr"), kOn);
    bool wasAsked = false;
    platform.http.whileWaiting = [&] {
        wasAsked = true;
        EXPECT_TRUE(PopupIsUp());
        EXPECT_EQ(platform.player.log, QStringList());
        EXPECT_FALSE(log.contains(QStringLiteral("link")));
    };
    dispatch.Alarm(1);
    EXPECT_TRUE(wasAsked);
    EXPECT_EQ(platform.player.url, QStringLiteral("a.mp3"));
}

TEST_F(AlertDispatchTest, secondAlarmInsideTheWait_firesUnlessThePopupIsUp)
{
    for (const bool popup : {false, true}) {
        const QString attributes = popup ? kOn : kBare;
        SetPrayer(QStringLiteral("fajr"), attributes);
        SetPrayer(QStringLiteral("isha"), attributes);
        platform.http.whileWaiting = [&] { TickAt(20, 15); };
        TickAt(5, 0);
        const int requests = static_cast<int>(log.filter(QStringLiteral("request")).size());
        EXPECT_EQ(requests, popup ? 1 : 2);
        log.clear();
    }
}

TEST_F(AlertDispatchTest, mainWindowClosedDuringTheWait_endsThere)
{
    SetPrayer(QStringLiteral("fajr"), QStringLiteral(R"(enabled="true" play="true" audioFile="a.mp3")"));
    platform.http.whileWaiting = [&] { forms.Unload(QStringLiteral("FrmMain")); };
    dispatch.Alarm(1);
    EXPECT_EQ(TakeLog().size(), 2) << "no sound, no link, no ad";
    EXPECT_EQ(platform.player.log, QStringList());
    dispatch.Alarm(1);
    dispatch.AdvAlarm(1);
    EXPECT_EQ(TakeLog(), QStringList());
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
