// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Prayers.h"
#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "soak/SoakWorld.h"
#include "store/SimpleXML.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace {

constexpr int kDay = 24 * 60;

using Option = SoakWorld::Option;

const Option kGeneralOptions[] = {
    {"Opt12Hour", "hourmode", "12"},
    {"Opt24Hour", "hourmode", "24"},
    {"OptShafi", "asrMethode", "shafi"},
    {"OptHanafi", "asrMethode", "hanafi"},
    {"ChkDLS", "useDLS"},
    {"ChkAdvWarn", "useAdvWarn"},
    {"OptISNA", "method", "ISNA"},
    {"OptUOIS", "method", "University Of Islamic Sciences"},
    {"OptMWL", "method", "Muslim World League"},
    {"OptEGAS", "method", "Egyptian General Authority of Survey"},
};
const Option kPrayerOptions[] = {{"ChkAlertMain", "enabled"},
                                 {"ChkSilAlert", "popup"},
                                 {"ChkAudioAlert", "play"},
                                 {"ChkIndMobAlert", "mobil"}};

// The prayer of a page from 1 on.
const Prayer& PageOf(int page)
{
    return *PrayerOfTab(static_cast<std::int16_t>(page + 2));
}

const QLocale kLocales[] = {QLocale(QLocale::English, QLocale::UnitedStates),
                            QLocale(QLocale::German),
                            QLocale(QLocale::French),
                            QLocale(QLocale::Arabic, QLocale::Egypt),
                            QLocale(QLocale::Persian),
                            QLocale(QLocale::Turkish),
                            QLocale::c()};

} // namespace

bool SoakWorld::CanClick(const QString& window, const char* name) const
{
    const Form* const form = m_world.Loaded(window);
    const auto* const control = form == nullptr ? nullptr : form->findChild<QWidget*>(QLatin1String(name));
    return control != nullptr && control->isVisible() && control->isEnabled();
}

QStringList SoakWorld::FileLines() const
{
    const std::optional<QByteArray> bytes = m_files.Read(QStringLiteral("settings.xml"), 1 << 20);
    return QString::fromUtf8(*bytes).split(u'\n');
}

QString SoakWorld::Element() const
{
    return m_page == 0 ? QStringLiteral("alerts") : QString(PageOf(m_page).element);
}

QString SoakWorld::Stored(const char* attribute) const
{
    SimpleXML settings(m_world.interfaces);
    settings.Load(kSettingsFile);
    return settings.GetAttribute(QLatin1String(attribute),
                                 m_page == 0 ? kAlertsPath : kAlertsPath + QStringLiteral("//") + Element());
}

void SoakWorld::Do(const QString& element, const std::function<void()>& action)
{
    const QStringList before = FileLines();
    action();
    const QStringList after = FileLines();
    Expect(after.size() == before.size(), QStringLiteral("no line of the file comes or goes"));
    for (qsizetype i = 0; i < std::min(before.size(), after.size()); ++i) {
        Expect(after.at(i) == before.at(i) || after.at(i).trimmed().startsWith(u'<' + element + u' '),
               QStringLiteral("only %1 changes in the file, not %2").arg(element, after.at(i)));
    }
}

void SoakWorld::ScheduleNextAction()
{
    if (IsAlertsOpen() && model.activeForm == u"FrmMain") {
        // The list of places has given the attention back over an open dialog: the file has changes of the
        // dialog that the program does not hold yet when alerts come.
        m_untilAction = 1 + Roll(4 * 3600);
        return;
    }
    const bool isAtWork = IsAlertsOpen() || m_world.IsUp(FrmLocation::kName);
    if (isAtWork && Chance(85)) {
        m_untilAction = 1 + Roll(180);
        return;
    }
    m_untilAction = 1 + Roll(3600);
    if (Chance(35)) {
        // Near the next prayer, where it matters.
        const QTime now = m_world.platform.clock.now.time();
        const int minute = now.hour() * 60 + now.minute();
        int wait = kDay;
        for (const int slot : model.minutes) {
            const int until = slot - minute;
            wait = until > 0 && until < wait ? until : wait;
        }
        m_untilAction = std::max(1, wait * 60 - 1200 + Roll(1500));
    }
}

void SoakWorld::Act()
{
    ++actions;
    if (!m_world.Main().isVisible() && Chance(70)) {
        // Few actions are possible while it is hidden.
        MinimiseOrOpen();
    }
    const bool isAttentionBack = IsAlertsOpen() && model.activeForm == u"FrmMain";
    if (isAttentionBack && Chance(80)) {
        ActOnPage();
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

void SoakWorld::OpenAlerts()
{
    const int page = Roll(7);
    const char* const link = page == 0 ? "LblAlertsLink" : PageOf(page).link.latin1();
    if (CanClick(FrmMain::kName, link)) {
        Do({}, [&] { m_world.Click(FrmMain::kName, link); });
        m_page = page;
        model.activeForm = FrmAlerts::kName;
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
        m_page = Roll(7);
        const char* const tab = m_page == 0 ? "LblGeneral" : PageOf(m_page).tabLabel.latin1();
        Do({}, [&] { m_world.Click(FrmAlerts::kName, tab); });
    }
    ActOnPage();
}

void SoakWorld::ActOnPage()
{
    for (int i = Roll(3); i >= 0; --i) {
        Do(Element(), [this] { ActOnce(); });
    }
}

void SoakWorld::ActOnce()
{
    if (Chance(20)) {
        m_page == 0 ? ClickBar() : TypePath();
    } else if (m_page == 0) {
        ClickOption(kGeneralOptions[Roll(static_cast<int>(std::size(kGeneralOptions)))]);
    } else {
        ClickOption(kPrayerOptions[Roll(static_cast<int>(std::size(kPrayerOptions)))]);
    }
}

void SoakWorld::ClickOption(const Option& option)
{
    const QLatin1String value(option.value);
    const bool isBox = QLatin1String(option.control).startsWith(QLatin1String("Chk"));
    const bool isOn = Stored(option.attribute) == value;
    // Boxes are more often on than off.
    if (CanClick(FrmAlerts::kName, option.control) && (!isBox || !isOn || Chance(40))) {
        m_world.Click(FrmAlerts::kName, option.control);
        Expect(Stored(option.attribute) == (isBox && isOn ? QLatin1String("false") : value),
               QLatin1String(option.control) + QStringLiteral(" is stored"));
    }
}

void SoakWorld::ClickBar()
{
    auto& bar = m_world.Find<SpinBar>(FrmAlerts::kName, "VScroll1");
    const int step = Chance(50) ? 1 : -1;
    const int value = bar.Value() + step;
    if (bar.isEnabled()) {
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, step > 0 ? 3 : bar.height() - 3));
        Expect(value < 1 || value > 30 || Stored("advWarn") == QString::number(value),
               QStringLiteral("the bar stores its value"));
    }
}

void SoakWorld::TypePath()
{
    if (!CanClick(FrmAlerts::kName, "TxtPath")) {
        return;
    }
    auto& path = m_world.Find<QLineEdit>(FrmAlerts::kName, "TxtPath");
    QString expected = Stored("audioFile");
    if (expected.size() >= 12) {
        QTest::keyClick(&path, Qt::Key_A, Qt::ControlModifier);
        expected.clear();
    } else {
        QTest::keyClick(&path, Qt::Key_End);
    }
    const QChar letter(u'a' + Roll(26));
    QTest::keyClick(&path, letter.toLatin1());
    Expect(Stored("audioFile") == expected + letter, QStringLiteral("the path is stored as typed"));
}

void SoakWorld::CloseAlerts()
{
    Do({}, [this] {
        if (CanClick(FrmAlerts::kName, "CmdClose") && Chance(50)) {
            m_world.Click(FrmAlerts::kName, "CmdClose");
        } else {
            m_world.Loaded(FrmAlerts::kName)->close();
            Desk::Settle();
        }
    });
    Update();
    ReturnToMain();
}

void SoakWorld::ReturnToMain()
{
    model.isMainEnabled = true;
    model.activeForm = MainForm::kName;
}

void SoakWorld::OpenPlaces()
{
    if (CanClick(FrmMain::kName, "LblLocLink")) {
        m_world.Click(FrmMain::kName, "LblLocLink");
        model.isMainEnabled = false;
        model.activeForm = FrmLocation::kName;
    }
}

void SoakWorld::ActInPlaces()
{
    if (Chance(30)) {
        m_world.Loaded(FrmLocation::kName)->close();
        Desk::Settle();
        ReturnToMain();
        return;
    }
    auto& list = m_world.Find<ListBox>(FrmLocation::kName, "LstLocations");
    const QListWidgetItem* const row = list.item(Roll(list.count()));
    const QString place = row->text();
    Do(QStringLiteral("locations"), [&] {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(row).center());
        m_world.Click(FrmLocation::kName, "CmdSet");
    });
    Expect(m_world.Text("LblLocation") == place, QStringLiteral("the chosen place is the current one"));
    Update();
    ReturnToMain();
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
    using State = ChangingService::State;
    const State states[] = {State::kNormal, State::kNormal, State::kSlow, State::kNoXml, State::kUnreachable};
    m_service.state = states[Roll(static_cast<int>(std::size(states)))];
    faults += m_service.state == State::kNormal ? 0 : 1;
}
