// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/SoakWorld.h"

#include <QRegularExpression>

namespace {

const std::map<QString, DueAlerts::Place> kPlaces = {
    {QStringLiteral("Chicago"),
     {QStringLiteral("US-1"), QStringLiteral("Chicago, Illinois"), QStringLiteral("41.85"),
      QStringLiteral("-87.65"), -6}},
    {QStringLiteral("Makkah"),
     {QStringLiteral("SA-1"), QStringLiteral("Makkah, Saudi Arabia"), QStringLiteral("21.42"),
      QStringLiteral("39.83"), 3}},
    {QStringLiteral("Oslo"),
     {QStringLiteral("NO-1"), QStringLiteral("Oslo, Norway"), QStringLiteral("59.91"),
      QStringLiteral("10.75"), 1}},
    {QStringLiteral("Sydney"),
     {QStringLiteral("AU-1"), QStringLiteral("Sydney, Australia"), QStringLiteral("-33.87"),
      QStringLiteral("151.21"), 10}},
    {QStringLiteral("Karachi"),
     {QStringLiteral("PK-1"), QStringLiteral("Karachi, Pakistan"), QStringLiteral("24.86"),
      QStringLiteral("67.01"), 5}},
};

QString SoakSettings()
{
    QString text = SettingsText();
    text.replace(QStringLiteral(R"(mobileEnabled="false")"), QStringLiteral(R"(mobileEnabled="true")"));
    text.replace(QStringLiteral(R"(mobileConfirm="0")"), QStringLiteral(R"(mobileConfirm="1")"));
    text.replace(QStringLiteral(R"(useAdvWarn="false")"), QStringLiteral(R"(useAdvWarn="true")"));
    text.replace(QStringLiteral(R"(<shuruq enabled="false")"), QStringLiteral(R"(<shuruq enabled="true")"));
    text.remove(QRegularExpression(QStringLiteral("    <(Chicago|Makkah) [^>]*/>\n")));
    QString places;
    for (const auto& [key, place] : kPlaces) {
        places += QStringLiteral("    <%1 atlas_id=\"%2\" city=\"%3\" state=\"%4\" longitude=\"\" "
                                 "longitude_final=\"%5\" latitude=\"\" latitude_final=\"%6\" "
                                 "time_zone2=\"%7\"/>\n")
                      .arg(key, place.atlasId, place.name.section(QStringLiteral(", "), 0, 0),
                           place.name.section(QStringLiteral(", "), 1), place.longitude, place.latitude,
                           QString::number(place.zoneHours));
    }
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

Http::Reply MoodyService::Fetch(const QString& url, const HttpLimits& /*limits*/)
{
    if (whileWaiting) {
        whileWaiting(url);
    }
    switch (mood) {
    case Mood::kGone:
        return std::nullopt;
    case Mood::kGarbage:
        return QByteArray("<html><p>502 Bad Gateway");
    default:
        return QByteArray(R"(<root ad_url="PGI+QW4gYWQ8L2I+" wait_time="10"/>)");
    }
}

SoakWorld::SoakWorld(unsigned seed)
    : model(m_calculation, kPlaces)
    , m_random(seed)
    , m_world(m_files, &m_service, SoakSettings())
    , m_calculation(CopiedModule(m_copy.path()))
{
    model.file.current = QStringLiteral("Chicago");
    m_service.whileWaiting = [this](const QString& url) { OnRequest(url); };
    m_world.platform.clock.Set(QDate(2027, 1, 1), QTime(3, 0));
    m_world.Start();
    model.Start(Today());
    ScheduleNextDeed();
}

void SoakWorld::PassDays(int days)
{
    const QDate end = Today().addDays(days);
    while (Today() < end && m_difference.isEmpty()) {
        PassSecond();
        if (--m_untilDeed == 0) {
            Act();
            ScheduleNextDeed();
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
    // What the program has not asked the service about it holds not to be due.
    model.PassAlarm(tick, Today());
    ObserveSound();
    ObservePopup();
    model.PassWarning(tick);
    Compare();

    FirePopupTimer();
    model.PassPopupSecond();
    if (model.isPopupUp && --m_untilOk == 0 && CanClick(FrmPopup::kName, "Command1")) {
        m_world.Click(FrmPopup::kName, "Command1");
        model.PressOk();
    }
    Compare();
    if (!m_ticking.empty() && Roll(300) == 0) {
        Act();
    }
    if (tick.time.second() == 0 && tick.time.minute() % 10 == 0) {
        QCoreApplication::processEvents();
    }
}

void SoakWorld::FirePopupTimer()
{
    for (const FakeTimer* const timer : m_world.platform.timers.all) {
        if (timer->enabled && !timer->isSecondTicker) {
            timer->Fire();
            // Windows come and go in it, and timers with them.
            return;
        }
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
    Give(url.mid(url.indexOf(u"/cgi-bin")));
    ++given;
    model.PassAlarm(tick, Today());
    Compare();
    if (m_service.mood == MoodyService::Mood::kSlow && m_ticking.size() < 3) {
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
    Give(QStringLiteral("popup ") + label.text());
    given += label.text().startsWith(u"Advanced") ? 1 : 0;
    // So that the next one shows, also one that says the same.
    label.clear();
    m_untilOk = Chance(40) ? -1 : 1 + Roll(500);
}

void SoakWorld::ObserveSound()
{
    for (const QString& line : std::as_const(m_world.platform.player.log)) {
        if (line.startsWith(u"url ")) {
            Give(line);
        }
    }
    m_world.platform.player.log.clear();
}

void SoakWorld::Give(const QString& what)
{
    m_given << what;
}

void SoakWorld::Compare()
{
    if (m_given != model.due) {
        Differ(QStringLiteral("given: %1\ndue:   %2").arg(m_given.join(u'|'), model.due.join(u'|')));
    }
    m_given.clear();
    model.due.clear();
    const FrmMain& main = m_world.Main();
    if (main.Variables().ActiveForm != model.activeForm) {
        Differ(
            QStringLiteral("ActiveForm is %1 and not %2").arg(main.Variables().ActiveForm, model.activeForm));
    }
    if (main.isEnabled() != model.isMainEnabled) {
        Differ(QStringLiteral("the main window is enabled, or is not"));
    }
    if (m_world.IsUp(FrmPopup::kName) != model.isPopupUp) {
        Differ(QStringLiteral("the popup is up, or is not"));
    }
}

void SoakWorld::Differ(const QString& what)
{
    if (m_difference.isEmpty()) {
        m_difference = QStringLiteral("%1, tick %2, after %3 deeds: %4")
                           .arg(m_world.platform.clock.now.toString(Qt::ISODate))
                           .arg(ticks)
                           .arg(deeds)
                           .arg(what);
    }
}
