// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"

#include "calculation/CivilDate.h"
#include "calculation/Elevation.h"
#include "calculation/Qibla.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace calculation {

namespace {

constexpr std::int32_t kMinutesPerDay = 1440;
// The scheduler raises no alert at minute 0, when it computes the new day.
constexpr std::int32_t kFirstMinute = 1;
constexpr std::int32_t kLastMinute = kMinutesPerDay - 1;
constexpr std::int16_t kNoMinute = -1;
constexpr std::int32_t kTenthsPerTurn = 3600;

// The reach of the day's track, beyond which an elevation is worked out from the theory itself.
constexpr double kDaysOfTrack = 1.5;

std::optional<Event> EventOf(std::int16_t slot)
{
    switch (slot) {
    case 1:
        return Event::Fajr;
    case 2:
        return Event::Sunrise;
    case 5:
        return Event::Transit;
    case 6:
        return Event::AsrOneLength;
    case 7:
        return Event::AsrTwoLengths;
    case 9:
        return Event::Sunset;
    case 10:
        return Event::Isha;
    default:
        return std::nullopt;
    }
}

std::int16_t Tenths(double degrees)
{
    return static_cast<std::int16_t>(std::lround(degrees * 10.0));
}

double DaysFromNoon(std::int16_t minute)
{
    return static_cast<double>(minute) / kMinutesPerDay - 0.5;
}

} // namespace

void Calculator::SetHorParams(const Place& place, std::int16_t offsetMinutes, std::int16_t day,
                              std::int16_t month, std::int16_t year)
{
    m_place = place;
    m_offsetMinutes = offsetMinutes;
    m_daysSince2000 = DaysSince2000(day, month, year);
    m_isDayKnown = false;
    m_isMinuteKnown.reset();
    m_qibla.reset();
    m_moon.reset();
    m_hijri.reset();
}

void Calculator::SetHorTemkin(const std::array<std::int16_t, kSlotCount>& margins)
{
    m_margins = margins;
}

void Calculator::SetHorAngle(std::int16_t fajr, std::int16_t isha)
{
    m_fajrAngle = fajr;
    m_ishaAngle = isha;
    m_day.SetTwilightAngles(fajr / 100.0, isha / 100.0);
    m_isMinuteKnown.reset();
}

// The epoch of the day count is the noon of its first day, as is that of the astronomers.
double Calculator::UtNoon() const
{
    return WithinTheories(m_daysSince2000) - static_cast<double>(m_offsetMinutes) / kMinutesPerDay;
}

PrayerDay& Calculator::Day()
{
    if (!m_isDayKnown) {
        m_day.SetPlaceAndDate(m_place, UtNoon());
        m_day.SetTwilightAngles(m_fajrAngle / 100.0, m_ishaAngle / 100.0);
        m_isDayKnown = true;
    }
    return m_day;
}

std::int32_t Calculator::MinuteOfEvent(Event event)
{
    const double minutes = (Day().WithinDate(event) + 0.5) * kMinutesPerDay;
    // The last half minute of the date would round to the midnight at its end.
    return std::min(static_cast<std::int32_t>(std::lround(minutes)), kLastMinute);
}

std::int16_t Calculator::Horarium(std::int16_t slot)
{
    const std::optional<Event> event = EventOf(slot);
    if (!event) {
        return kNoMinute;
    }
    const auto index = static_cast<std::size_t>(slot - 1);
    if (!m_isMinuteKnown[index]) {
        m_minutes[index] = static_cast<std::int16_t>(MinuteOfEvent(*event));
        m_isMinuteKnown[index] = true;
    }
    const std::int32_t sum = (m_minutes[index] + m_margins[index]) % kMinutesPerDay;
    const std::int32_t minute = sum < 0 ? sum + kMinutesPerDay : sum;
    return static_cast<std::int16_t>(std::max(minute, kFirstMinute));
}

std::int16_t Calculator::QiblaDir()
{
    if (!m_qibla) {
        m_qibla = static_cast<std::int16_t>(Tenths(QiblaBearing(m_place)) % kTenthsPerTurn);
    }
    return *m_qibla;
}

std::int16_t Calculator::SunElev(std::int16_t minute)
{
    const double time = DaysFromNoon(minute);
    if (std::abs(time) <= kDaysOfTrack) {
        const PrayerDay& day = Day();
        return Tenths(SunElevation(day.Track(), day.OwnLatitude(), time));
    }
    const SunTrack track(UtNoon() + time, m_place.LongitudeTurns());
    return Tenths(SunElevation(track, Latitude::FromDegrees(m_place.LatitudeDegrees()), 0.0));
}

std::int16_t Calculator::MoonElevation(std::int16_t minute)
{
    if (!m_moon || m_moon->minute != minute) {
        const double elevation = calculation::MoonElevation(m_place, UtNoon() + DaysFromNoon(minute));
        m_moon = MoonReading{minute, Tenths(elevation)};
    }
    return m_moon->tenths;
}

HijriDate Calculator::Hijri()
{
    if (!m_hijri) {
        m_hijri = HijriDateOf(m_daysSince2000);
    }
    return *m_hijri;
}

} // namespace calculation
