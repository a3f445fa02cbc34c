// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/DueAlerts.h"

#include "engine/Prayers.h"
#include "forms/MainForm.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "service/ServiceRequests.h"
#include "store/SimpleXML.h"
#include "support/Conversions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

std::int16_t Short(double number)
{
    return static_cast<std::int16_t>(std::floor(number));
}

int MinuteOf(const QTime& time)
{
    return time.hour() * 60 + time.minute();
}

} // namespace

DueAlerts::DueAlerts(const Platform& platform, const Configuration& held, const QString& moduleFolder)
    : m_platform(platform)
    , m_held(held)
    , m_calculation(moduleFolder)
{
}

bool DueAlerts::Update()
{
    const QDate today = m_platform.clock.Now().date();
    const int offset = m_held.ZoneHours * 60 + (m_held.UseDayLight ? 60 : 0);
    m_calculation.SetHorParams(Short(m_held.LatitudeFinal * 100.0), Short(m_held.LongitudeFinal * 100.0),
                               static_cast<std::int16_t>(offset), static_cast<std::int16_t>(today.day()),
                               static_cast<std::int16_t>(today.month()),
                               static_cast<std::int16_t>(today.year()));
    m_calculation.SetHorTemkin({});
    m_calculation.SetHorAngle(Short(m_held.FajrAngle * 100.0), 500, 500, Short(m_held.IshaAngle * 100.0));
    for (std::size_t i = 0; i < minutes.size(); ++i) {
        minutes.at(i) = m_calculation.Horarium(static_cast<std::int16_t>(i + 1));
    }
    Configuration file;
    LoadConfiguration(file, m_platform);
    return file == m_held;
}

bool DueAlerts::PassAlarm(Tick& tick)
{
    if (std::exchange(tick.isPastAlarm, true) || tick.time.second() > 0) {
        return true;
    }
    const int minute = MinuteOf(tick.time);
    if (minute == 0) {
        return Update();
    }
    const Prayer* const prayer = PrayerAt(minute);
    SimpleXML file(m_platform);
    if (prayer == nullptr || !IsOn(*prayer, file, m_held.AsrMethod)) {
        return true;
    }
    const auto option = [&](const char* name) {
        return file.GetAttribute(QLatin1String(name), kAlertsPath + QStringLiteral("//") + prayer->element);
    };
    if (option("popup") == u"true") {
        ShowPopup(QStringLiteral("Prayer Time:\r\n%1: %2")
                      .arg(prayer->name, FormatPrayerTime(Short(minute), m_held.HourMode != u"12")),
                  600);
    }
    tick.hasSound = option("play") == u"true";
    tick.sound = option("audioFile");
    // The file confirms the mobile device from the start and for good.
    due << ServiceRequests::PrayerCall(m_held, prayer->number,
                                       tick.hasSound ? QStringLiteral("Normal") : QStringLiteral("Quite"),
                                       option("mobil") == u"true" ? QStringLiteral("1") : QStringLiteral("0"),
                                       FormatPrayerTime(Short(minute), true));
    ++alarms;
    return true;
}

void DueAlerts::PassAnswer(const Tick& tick)
{
    if (tick.hasSound) {
        due << QStringLiteral("url ") + tick.sound;
    }
}

void DueAlerts::PassWarning(Tick& tick)
{
    const int minute = MinuteOf(tick.time);
    if (std::exchange(tick.isPastWarning, true) || tick.time.second() > 0 || minute == 0 ||
        !m_held.UseAdvAlert) {
        return;
    }
    const Prayer* const prayer = PrayerAt(minute + m_held.AdvAlertMinutes);
    SimpleXML file(m_platform);
    file.Load(kSettingsFile);
    // Unlike an alarm it asks the file which Asr counts.
    if (prayer == nullptr ||
        !IsOn(*prayer, file, file.GetAttribute(QStringLiteral("asrMethode"), kAlertsPath))) {
        return;
    }
    ShowPopup(QStringLiteral("Advanced Alert\r\n%1 %2")
                  .arg(prayer->name,
                       FormatPrayerTime(Short(minute + m_held.AdvAlertMinutes), m_held.HourMode == u"24")),
              (m_held.AdvAlertMinutes - 1) * 60 + 1);
    ++warnings;
}

void DueAlerts::PassPopupSecond()
{
    if (isPopupUp && ++m_popupSeconds >= m_popupLimit) {
        EndPopup();
    }
}

void DueAlerts::ShowPopup(const QString& text, int seconds)
{
    due << QStringLiteral("popup ") + text;
    isPopupUp = true;
    isMainEnabled = false;
    activeForm = QStringLiteral("FrmPopup");
    m_popupSeconds = 0;
    m_popupLimit = seconds;
}

void DueAlerts::EndPopup()
{
    isPopupUp = false;
    isMainEnabled = true;
    activeForm = MainForm::kName;
}

const Prayer* DueAlerts::PrayerAt(int minute) const
{
    const auto* const slot = std::find(minutes.begin(), minutes.end(), minute);
    return slot == minutes.end() || minute >= 1440
               ? nullptr
               : PrayerOfSlot(static_cast<std::int16_t>(slot - minutes.begin() + 1));
}

bool DueAlerts::IsOn(const Prayer& prayer, SimpleXML& file, const QString& asr)
{
    file.Load(kSettingsFile);
    const QString path = kAlertsPath + QStringLiteral("//") + prayer.element;
    const bool isOn = activeForm == MainForm::kName && prayer.CountsUnder(asr) &&
                      file.GetAttribute(QStringLiteral("enabled"), path) == u"true";
    dropped += isOn ? 0 : 1;
    return isOn;
}
