// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PTimer.h"

#include "engine/CalculationLibrary.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

namespace {

// The only value that counts as true.
constexpr std::int16_t kTrue = -1;

QString HijriMonthName(std::int16_t month)
{
    switch (month) {
    case 1:
        return QStringLiteral("Muharram ul Haram");
    case 2:
        return QStringLiteral("Safar");
    case 3:
        return QStringLiteral("Rabi-ul-Awwal");
    case 4:
        return QStringLiteral("Rab-ul-Akhir");
    case 5:
        return QStringLiteral("Jamadi-ul-Awwal");
    case 6:
        return QStringLiteral("Jamadi-ul-Akhir");
    case 7:
        return QStringLiteral("Rajab");
    case 8:
        return QStringLiteral("Sha'aban");
    case 9:
        return QStringLiteral("Ramadhan");
    case 10:
        return QStringLiteral("Shawwal");
    case 11:
        return QStringLiteral("Dhul Qadah");
    case 12:
        return QStringLiteral("Dhul Hijja");
    default:
        return {};
    }
}

void Raise(const std::function<void()>& event)
{
    if (event) {
        event();
    }
}

} // namespace

PTimer::PTimer(const Platform& platform, Calculation& calculation)
    : m_platform(platform)
    , m_calculation(calculation)
    , Timer1(platform.timers.CreateSecondTicker())
{
    Timer1->SetInterval(1000);
    Timer1->SetHandler([this] { OnTimer(); });
}

void PTimer::SetupPTimer(std::int16_t latitude, std::int16_t longitude, std::int16_t zone,
                         std::int16_t dayLightSaving, std::int16_t angle1, std::int16_t angle2,
                         std::int16_t useAdvWarn, std::int16_t advWarnInMin, std::int16_t reCalc,
                         std::int16_t minutesBeyondZone)
{
    Lat = latitude;
    Lng = longitude;
    TimeZone = zone;
    MinutesBeyondZone = minutesBeyondZone;
    DayLightSaving = dayLightSaving;
    TwighlightAngle1 = angle1;
    TwighlightAngle2 = angle2;
    UseAdvWarn = useAdvWarn;
    AdvWarnInMin = advWarnInMin;
    if (reCalc == kTrue) {
        RecalculateDay();
    }
    PTimerStatus = 0;
}

void PTimer::StartTimer()
{
    Timer1->SetEnabled(true);
    Raise(events.Started);
    PTimerStatus = 1;
}

void PTimer::StopTimer()
{
    Timer1->SetEnabled(false);
    Raise(events.Stopped);
    PTimerStatus = 0;
}

void PTimer::RecalculateDay()
{
    std::int16_t offset = AddInteger16(MultiplyInteger16(TimeZone, 60), MinutesBeyondZone);
    if (DayLightSaving == kTrue) {
        // Intended: daylight saving is one hour and a setting of the user; the system's rules are not used.
        offset = AddInteger16(offset, 60);
    }
    // Intended: three readings of the clock. If midnight falls between them, the tick of 00:00:00 follows
    // within a second and computes the day again.
    const auto day = static_cast<std::int16_t>(m_platform.clock.Now().date().day());
    const auto month = static_cast<std::int16_t>(m_platform.clock.Now().date().month());
    const std::int16_t year = ToInteger16(m_platform.clock.Now().date().year());
    m_calculation.SetHorParams(Lat, Lng, offset, day, month, year);
    m_calculation.SetHorTemkin({});
    m_calculation.SetHorAngle(TwighlightAngle1, 500, 500, TwighlightAngle2);
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        PrayerMinutes.at(static_cast<std::size_t>(slot - 1)) = m_calculation.Horarium(slot);
    }
}

std::int16_t PTimer::GetPrayerTime(std::int16_t PrayerID) const
{
    return PrayerID >= 1 && PrayerID <= 10 ? PrayerMinutes.at(static_cast<std::size_t>(PrayerID - 1))
                                           : std::int16_t{0};
}

double PTimer::QDir() const
{
    return m_calculation.QiblaDir() / 10.0;
}

std::int16_t PTimer::MinuteNow() const
{
    const QTime time = m_platform.clock.Now().time();
    return static_cast<std::int16_t>(time.hour() * 60 + time.minute());
}

std::int16_t PTimer::GetSunElev() const
{
    return m_calculation.SunElev(MinuteNow());
}

std::int16_t PTimer::GetMoonElev() const
{
    return m_calculation.MoonElevation(MinuteNow());
}

QString PTimer::GetHDate() const
{
    return QString::number(m_calculation.Hday()) + u' ' + HijriMonthName(m_calculation.Hmon()) +
           QStringLiteral(", ") + QString::number(m_calculation.Hyear());
}

void PTimer::OnTimer()
{
    try {
        RunTick();
    } catch (const std::exception&) {
        Timer1->SetEnabled(false);
        m_platform.boxes.Show(QStringLiteral("There has been an error. Please restart Dusk Beacon"));
    }
}

void PTimer::RunTick()
{
    const QTime time = m_platform.clock.Now().time();
    Raise(events.Tick);
    if (time.second() > 0) {
        return;
    }
    const int minute = time.hour() * 60 + time.minute();
    if (minute == 0) {
        // No alarm at midnight. The handler of Midnight loads the settings and computes the day once more.
        RecalculateDay();
        Raise(events.Midnight);
        return;
    }
    RaiseFirstMatch(minute, events.Alarm);
    if (UseAdvWarn == kTrue) {
        // Today's slots only: there is no warning across midnight.
        RaiseFirstMatch(minute + AdvWarnInMin, events.AdvAlarm);
    }
}

void PTimer::RaiseFirstMatch(int minute, const std::function<void(std::int16_t)>& event) const
{
    // A value outside 0..1439 means that the event does not occur on this date. The sum for an advance
    // warning may be outside too.
    constexpr int kMinutesOfDay = 1440;
    if (minute < 0 || minute >= kMinutesOfDay) {
        return;
    }
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        if (GetPrayerTime(slot) == minute) {
            if (event) {
                event(slot);
            }
            return;
        }
    }
}
