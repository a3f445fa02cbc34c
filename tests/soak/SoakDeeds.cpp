// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "soak/SoakWorld.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include <pugixml.hpp>

namespace {

constexpr int kDay = 24 * 60;

const char* const kLinks[] = {"LblAlertsLink", "LblFarjLink",    "LblShuruqLink", "LblDuhrLink",
                              "LblAsrLink",    "LblMaghribLink", "LblIshaLink"};
const char* const kTabs[] = {"LblGeneral", "LblFajr", "LblShuruq", "LblDuhr", "LblAsr", "Maghrib", "LblIsha"};
const char* const kElements[] = {"fajr", "shuruq", "duhr", "asr", "maghrib", "isha"};

struct Method
{
    const char* option;
    const char* name;
    // In whole degrees, as the scheduler gets them: halves go to the even neighbour.
    int angle1;
    int angle2;
};

const Method kMethods[] = {
    {"OptISNA", "ISNA", -15, -15},
    {"OptUOIS", "University Of Islamic Sciences", -18, -18},
    {"OptMWL", "Muslim World League", -18, -17},
    {"OptEGAS", "Egyptian General Authority of Survey", -20, -18},
};

const QLocale kLocales[] = {QLocale(QLocale::English, QLocale::UnitedStates),
                            QLocale(QLocale::German),
                            QLocale(QLocale::French),
                            QLocale(QLocale::Arabic, QLocale::Egypt),
                            QLocale(QLocale::Persian),
                            QLocale(QLocale::Turkish),
                            QLocale::c()};

QString Word(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

bool SoakWorld::CanClick(const QString& window, const char* name) const
{
    const Form* const form = m_world.Loaded(window);
    const auto* const control = form == nullptr ? nullptr : form->findChild<QWidget*>(QLatin1String(name));
    return control != nullptr && control->isVisible() && control->isEnabled();
}

void SoakWorld::ScheduleNextDeed()
{
    if (IsAlertsOpen() && model.activeForm == u"FrmMain") {
        // The list of places has given the attention back over an open dialog: what is changed in there is on
        // file and not yet taken to heart when alerts come.
        m_untilDeed = 1 + Roll(4 * 3600);
        return;
    }
    const bool isAtWork = IsAlertsOpen() || m_world.IsUp(FrmLocation::kName);
    if (isAtWork && Chance(85)) {
        m_untilDeed = 1 + Roll(180);
        return;
    }
    m_untilDeed = 1 + Roll(3600);
    if (Chance(35)) {
        // Near the next prayer, where it matters.
        const QTime now = m_world.platform.clock.now.time();
        const int minute = now.hour() * 60 + now.minute();
        int wait = kDay;
        for (const int slot : model.slots_) {
            const int until = slot - minute;
            wait = until > 0 && until < wait ? until : wait;
        }
        m_untilDeed = std::max(1, wait * 60 - 1200 + Roll(1500));
    }
}

void SoakWorld::Act()
{
    ++deeds;
    if (!m_world.Main().isVisible() && Chance(70)) {
        // Hidden it would leave the user little to do.
        MinimiseOrOpen();
    }
    const bool isAttentionBack = IsAlertsOpen() && model.activeForm == u"FrmMain";
    if (isAttentionBack && Chance(80)) {
        ActOnGeneralOrPrayerPage();
        Compare();
        return;
    }
    const int what = Roll(100);
    if (what < 35) {
        IsAlertsOpen() ? ActInAlerts() : OpenAlerts();
    } else if (what < 52) {
        m_world.IsUp(FrmLocation::kName) ? ActInPlaces() : OpenPlaces();
    } else if (what < 60) {
        MinimiseOrOpen();
    } else if (what < 78) {
        ChangeClock();
    } else {
        ChangeOutside();
    }
    Compare();
}

void SoakWorld::LoadGeneralPage()
{
    m_page = 0;
    if (model.file.useAdvWarn) {
        m_minutesBar = model.file.advWarn;
    }
}

void SoakWorld::OpenAlerts()
{
    const int page = Roll(7);
    if (!CanClick(FrmMain::kName, kLinks[page])) {
        return;
    }
    if (m_world.Loaded(FrmAlerts::kName) == nullptr) {
        m_minutesBar = 30;
    }
    m_world.Click(FrmMain::kName, kLinks[page]);
    LoadGeneralPage();
    m_page = page;
    model.OpenAlerts();
}

void SoakWorld::ChooseTab(int page)
{
    if (CanClick(FrmAlerts::kName, kTabs[page])) {
        m_world.Click(FrmAlerts::kName, kTabs[page]);
        m_page = page;
        if (page == 0) {
            LoadGeneralPage();
        }
    }
}

void SoakWorld::ActInAlerts()
{
    const int what = Roll(10);
    if (what < 3) {
        CloseAlerts();
        return;
    }
    if (what < 4) {
        // Once more, over the one that is open.
        OpenAlerts();
        return;
    }
    if (what < 7) {
        ChooseTab(Roll(7));
    }
    ActOnGeneralOrPrayerPage();
}

void SoakWorld::ActOnGeneralOrPrayerPage()
{
    for (int i = Roll(3); i >= 0; --i) {
        m_page == 0 ? ActOnGeneralPage() : ActOnPrayerPage(m_page - 1);
        CompareFile();
    }
}

void SoakWorld::ActOnGeneralPage()
{
    const auto click = [this](const char* name) { m_world.Click(FrmAlerts::kName, name); };
    DueAlerts::File& file = model.file;
    switch (Roll(6)) {
    case 0: {
        const bool is12 = Chance(50);
        click(is12 ? "Opt12Hour" : "Opt24Hour");
        file.hourMode = is12 ? QStringLiteral("12") : QStringLiteral("24");
        break;
    }
    case 1: {
        const bool isShafi = Chance(50);
        click(isShafi ? "OptShafi" : "OptHanafi");
        file.asr = isShafi ? QStringLiteral("shafi") : QStringLiteral("hanafi");
        break;
    }
    case 2:
        click("ChkDLS");
        file.useDls = !file.useDls;
        break;
    case 3:
        // More often on than off.
        if (!file.useAdvWarn || Chance(30)) {
            click("ChkAdvWarn");
            file.useAdvWarn = !file.useAdvWarn;
        }
        break;
    case 4: {
        auto& bar = m_world.Find<SpinBar>(FrmAlerts::kName, "VScroll1");
        const int step = Chance(50) ? 1 : -1;
        const int value = m_minutesBar + step;
        if (bar.isEnabled()) {
            QTest::mouseClick(&bar, Qt::LeftButton, {},
                              QPoint(bar.width() / 2, step > 0 ? 3 : bar.height() - 3));
        }
        if (bar.isEnabled() && value >= 1 && value <= 30) {
            m_minutesBar = value;
            file.advWarn = value;
        }
        break;
    }
    default: {
        const Method& method = kMethods[Roll(4)];
        click(method.option);
        file.method = QLatin1String(method.name);
        file.angle1 = method.angle1;
        file.angle2 = method.angle2;
        break;
    }
    }
}

void SoakWorld::ActOnPrayerPage(int prayer)
{
    DueAlerts::Prayer& stored = model.file.prayers.at(static_cast<std::size_t>(prayer));
    const auto toggle = [this](const char* name, bool& value) {
        if (CanClick(FrmAlerts::kName, name)) {
            m_world.Click(FrmAlerts::kName, name);
            value = !value;
        }
    };
    switch (Roll(8)) {
    case 0:
    case 1:
        // More often on than off.
        if (!stored.enabled || Chance(40)) {
            toggle("ChkAlertMain", stored.enabled);
        }
        break;
    case 2:
        toggle("ChkSilAlert", stored.popup);
        break;
    case 3:
    case 4:
        toggle("ChkAudioAlert", stored.play);
        break;
    case 5:
        toggle("ChkIndMobAlert", stored.mobil);
        break;
    default:
        if (CanClick(FrmAlerts::kName, "TxtPath")) {
            auto& path = m_world.Find<QLineEdit>(FrmAlerts::kName, "TxtPath");
            const QChar letter(u'a' + Roll(26));
            if (stored.audioFile.size() >= 12) {
                QTest::keyClick(&path, Qt::Key_A, Qt::ControlModifier);
                stored.audioFile.clear();
            } else {
                QTest::keyClick(&path, Qt::Key_End);
            }
            QTest::keyClick(&path, letter.toLatin1());
            stored.audioFile += letter;
        }
        break;
    }
}

void SoakWorld::CompareFile()
{
    const std::optional<QByteArray> bytes = m_files.Read(QStringLiteral("settings.xml"), 1 << 20);
    pugi::xml_document document;
    document.load_buffer(bytes->constData(), static_cast<std::size_t>(bytes->size()));
    const pugi::xml_node root = document.child("root");
    const pugi::xml_node alerts = root.child("alerts");
    const auto expect = [this](pugi::xml_node node, const char* name, const QString& value) {
        const QString found = QString::fromUtf8(node.attribute(name).value());
        if (found != value) {
            Differ(QStringLiteral("%1 of %2 is \"%3\" in the file and not \"%4\"")
                       .arg(QLatin1String(name), QLatin1String(node.name()), found, value));
        }
    };
    const DueAlerts::File& file = model.file;
    expect(root.child("locations"), "Current", file.current);
    expect(alerts, "method", file.method);
    expect(alerts, "useAdvWarn", Word(file.useAdvWarn));
    expect(alerts, "advWarn", QString::number(file.advWarn));
    expect(alerts, "asrMethode", file.asr);
    expect(alerts, "useDLS", Word(file.useDls));
    expect(alerts, "hourmode", file.hourMode);
    for (std::size_t i = 0; i < file.prayers.size(); ++i) {
        const pugi::xml_node node = alerts.child(kElements[i]);
        const DueAlerts::Prayer& prayer = file.prayers.at(i);
        expect(node, "enabled", Word(prayer.enabled));
        expect(node, "popup", Word(prayer.popup));
        expect(node, "play", Word(prayer.play));
        expect(node, "mobil", Word(prayer.mobil));
        expect(node, "audioFile", prayer.audioFile);
    }
}

void SoakWorld::CloseAlerts()
{
    if (CanClick(FrmAlerts::kName, "CmdClose") && Chance(50)) {
        m_world.Click(FrmAlerts::kName, "CmdClose");
    } else {
        m_world.Loaded(FrmAlerts::kName)->close();
        Desk::Settle();
    }
    model.CloseAlerts(Today());
}

void SoakWorld::OpenPlaces()
{
    if (CanClick(FrmMain::kName, "LblLocLink")) {
        m_world.Click(FrmMain::kName, "LblLocLink");
        model.OpenPlaces();
    }
}

void SoakWorld::ActInPlaces()
{
    if (Chance(30)) {
        m_world.Loaded(FrmLocation::kName)->close();
        Desk::Settle();
        model.ClosePlaces();
        return;
    }
    auto& list = m_world.Find<ListBox>(FrmLocation::kName, "LstLocations");
    const int row = Roll(list.count());
    const QString city = list.item(row)->text().section(QStringLiteral(", "), 0, 0);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
    m_world.Click(FrmLocation::kName, "CmdSet");
    model.ChoosePlace(city, Today());
    CompareFile();
}

void SoakWorld::MinimiseOrOpen()
{
    FrmMain& main = m_world.Main();
    const bool wasVisible = main.isVisible();
    if (wasVisible) {
        main.showMinimized();
    } else {
        m_world.platform.tray.lastMenu->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    }
    Desk::Settle();
    if (main.isVisible() == wasVisible) {
        Differ(wasVisible ? QStringLiteral("not hidden") : QStringLiteral("not back"));
    }
}

void SoakWorld::ChangeClock()
{
    ++clockChanges;
    QDateTime& now = m_world.platform.clock.now;
    const int sign = Chance(50) ? 1 : -1;
    switch (Roll(5)) {
    case 0:
        // The computer sleeps.
        now = now.addSecs(8 * 3600);
        break;
    case 1:
        // It is set, by a little or by much.
        now = now.addSecs(sign * (1 + Roll(300)));
        break;
    case 2:
        now = now.addSecs(sign * (1 + Roll(3600)));
        break;
    case 3:
        // It is taken to another zone.
        now = now.addSecs(sign * 1800 * (1 + Roll(20)));
        break;
    default:
        // It is too busy to tick.
        now = now.addSecs(1 + Roll(180));
        break;
    }
}

void SoakWorld::ChangeOutside()
{
    if (Chance(30)) {
        m_world.platform.region.locale = kLocales[Roll(static_cast<int>(std::size(kLocales)))];
        return;
    }
    using Mood = MoodyService::Mood;
    const Mood moods[] = {Mood::kWell, Mood::kWell, Mood::kSlow, Mood::kGarbage, Mood::kGone};
    m_service.mood = moods[Roll(static_cast<int>(std::size(moods)))];
    faults += m_service.mood == Mood::kWell ? 0 : 1;
}
