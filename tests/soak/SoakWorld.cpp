// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/SoakWorld.h"

#include "store/SimpleXML.h"

#include <QRegularExpression>

namespace {

QString SoakSettings()
{
    QString text = SettingsText();
    text.replace(QStringLiteral(R"(mobileEnabled="false")"), QStringLiteral(R"(mobileEnabled="true")"));
    text.replace(QStringLiteral(R"(mobileConfirm="0")"), QStringLiteral(R"(mobileConfirm="1")"));
    text.replace(QStringLiteral(R"(useAdvWarn="false")"), QStringLiteral(R"(useAdvWarn="true")"));
    text.replace(QStringLiteral(R"(<shuruq enabled="false")"), QStringLiteral(R"(<shuruq enabled="true")"));
    text.remove(QRegularExpression(QStringLiteral("    <(Chicago|Makkah) [^>]*/>\n")));
    const QString places = QStringLiteral(
        R"(<Chicago atlas_id="US-1" city="Chicago" state="Illinois" longitude_final="-87.65" latitude_final="41.85" time_zone2="-6"/>
<Makkah atlas_id="SA-1" city="Makkah" state="Saudi Arabia" longitude_final="39.83" latitude_final="21.42" time_zone2="3"/>
<Oslo atlas_id="NO-1" city="Oslo" state="Norway" longitude_final="10.75" latitude_final="59.91" time_zone2="1"/>
<Sydney atlas_id="AU-1" city="Sydney" state="Australia" longitude_final="151.21" latitude_final="-33.87" time_zone2="10"/>
<Karachi atlas_id="PK-1" city="Karachi" state="Pakistan" longitude_final="67.01" latitude_final="24.86" time_zone2="5"/>
)");
    return text.replace(QStringLiteral("  </locations>"), places + QStringLiteral("  </locations>"));
}

// A module of its own: the program's has one state for the whole process.
QString CopiedModule(const QString& folder)
{
    const QString name = QStringLiteral("/DuskBeacon.DBN");
    QFile::copy(QStringLiteral(DUSKBEACON_BIN_FOLDER) + name, folder + name);
    return folder;
}

} // namespace

Http::Reply ChangingService::Fetch(const QString& url, const HttpLimits& /*limits*/)
{
    if (whileWaiting) {
        whileWaiting(url);
    }
    switch (state) {
    case State::kUnreachable:
        return std::nullopt;
    case State::kNoXml:
        return QByteArray("<html><p>502 Bad Gateway");
    default:
        return QByteArray(R"(<root ad_url="PGI+QW4gYWQ8L2I+" wait_time="10"/>)");
    }
}

SoakWorld::SoakWorld(unsigned seed)
    : m_random(seed)
    , m_world(m_files, &m_service, SoakSettings())
    , model(m_world.interfaces, m_world.forms.Variables().Settings, CopiedModule(m_copy.path()))
{
    // In the form of the program, so that an action changes one line.
    SimpleXML settings(m_world.interfaces);
    settings.Load(kSettingsFile);
    settings.Save(kSettingsFile);
    m_service.whileWaiting = [this](const QString& url) { OnRequest(url); };
    m_world.platform.clock.Set(QDate(2027, 1, 1), QTime(3, 0));
    m_world.Start();
    Update();
    ScheduleNextAction();
}

void SoakWorld::Update()
{
    Expect(model.Update(), QStringLiteral("the program holds what the file says"));
}

void SoakWorld::PassDays(int days)
{
    const QDate end = Today().addDays(days);
    while (Today() < end && m_difference.isEmpty()) {
        PassSecond();
        if (--m_untilAction == 0) {
            Act();
            ScheduleNextAction();
        }
    }
}

void SoakWorld::PassSecond()
{
    QDateTime& now = m_world.platform.clock.now;
    now = now.addSecs(1);
    ++ticks;
    DueAlerts::Tick tick;
    tick.time = now.time();
    m_ticking.push_back(&tick);
    m_world.platform.timers.Ticker()->Fire();
    m_ticking.pop_back();
    PassAlarm(tick);
    ObserveSound();
    ObservePopup();
    model.PassWarning(tick);
    Compare();

    FirePopupTimer();
    model.PassPopupSecond();
    if (model.isPopupUp && --m_untilOk == 0 && CanClick(FrmPopup::kName, "Command1")) {
        m_world.Click(FrmPopup::kName, "Command1");
        model.EndPopup();
    }
    Compare();
    if (!m_ticking.empty() && Roll(300) == 0) {
        Act();
    }
    if (tick.time.second() == 0 && tick.time.minute() % 10 == 0) {
        QCoreApplication::processEvents();
    }
}

void SoakWorld::PassAlarm(DueAlerts::Tick& tick)
{
    Expect(model.PassAlarm(tick), QStringLiteral("the program holds at midnight what the file says"));
}

void SoakWorld::FirePopupTimer()
{
    if (const FakeTimer* const timer = m_world.PopupTimer(); timer != nullptr) {
        timer->Fire();
    }
}

void SoakWorld::OnRequest(const QString& url)
{
    if (!url.contains(u"prayerCall.pl")) {
        return;
    }
    if (m_ticking.empty()) {
        Differ(QStringLiteral("a call outside a tick: ") + url);
        return;
    }
    DueAlerts::Tick& tick = *m_ticking.back();
    ObservePopup();
    m_given << url;
    ++given;
    PassAlarm(tick);
    Compare();
    if (m_service.state == ChangingService::State::kSlow && m_ticking.size() < 3) {
        ++hangs;
        for (int seconds = 1 + Roll(150); seconds > 0 && m_difference.isEmpty(); --seconds) {
            PassSecond();
        }
    }
    model.PassAnswer(tick);
}

void SoakWorld::ObservePopup()
{
    if (!m_world.IsUp(FrmPopup::kName)) {
        return;
    }
    auto& label = m_world.Find<QLabel>(FrmPopup::kName, "Label1");
    if (label.text().isEmpty()) {
        return;
    }
    m_given << QStringLiteral("popup ") + label.text();
    given += label.text().startsWith(u"Advanced") ? 1 : 0;
    // So that the next one shows, also one that says the same.
    label.clear();
    m_untilOk = Chance(40) ? -1 : 1 + Roll(500);
}

void SoakWorld::ObserveSound()
{
    for (const QString& line : std::as_const(m_world.platform.player.log)) {
        if (line.startsWith(u"url ")) {
            m_given << line;
        }
    }
    m_world.platform.player.log.clear();
}

void SoakWorld::Compare()
{
    if (m_given != model.due) {
        Differ(QStringLiteral("given: %1\ndue:   %2").arg(m_given.join(u'|'), model.due.join(u'|')));
    }
    m_given.clear();
    model.due.clear();
    const FrmMain& main = m_world.Main();
    Expect(main.Variables().ActiveForm == model.activeForm,
           model.activeForm + QStringLiteral(" has the attention"));
    Expect(main.isEnabled() == model.isMainEnabled, QStringLiteral("the main window is enabled or disabled"));
    Expect(m_world.IsUp(FrmPopup::kName) == model.isPopupUp, QStringLiteral("the popup is up or closed"));
}

void SoakWorld::Expect(bool holds, const QString& rule)
{
    if (!holds) {
        Differ(rule);
    }
}

void SoakWorld::Differ(const QString& what)
{
    if (m_difference.isEmpty()) {
        m_difference = QStringLiteral("%1, tick %2, after %3 actions: %4")
                           .arg(m_world.platform.clock.now.toString(Qt::ISODate))
                           .arg(ticks)
                           .arg(actions)
                           .arg(what);
    }
}
