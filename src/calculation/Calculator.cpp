// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"

#include "calculation/Moon.h"

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

// Days from noon in which the track of the date is used. An elevation further away gets a track of its own.
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

// The angles are those of the Muslim World League. The Hijri date is 0 until SetHorParams, so that the
// program does not show the default date.
Calculator::Calculator()
{
    SetHorParams({}, 0, 1, 1, 2000);
    SetHorAngle(-1800, -1700);
    m_hijri = HijriDate{0, 0, 0};
}

void Calculator::SetHorParams(const Place& place, std::int16_t offsetMinutes, std::int16_t day,
                              std::int16_t month, std::int16_t year)
{
    m_place = place;
    m_daysSince2000 = DaysSince2000(day, month, year);
    // m_daysSince2000 is also the number of days from 2000 January 1, 12h to the noon of the date.
    m_utNoon = WithinTheories(m_daysSince2000) - static_cast<double>(offsetMinutes) / kMinutesPerDay;
    m_day.SetPlaceAndDate(m_place, m_utNoon);
    m_hijri.reset();
}

void Calculator::SetHorTemkin(const std::array<std::int16_t, kSlotCount>& margins)
{
    m_margins = margins;
}

void Calculator::SetHorAngle(std::int16_t fajr, std::int16_t isha)
{
    m_day.SetTwilightAngles(fajr / 100.0, isha / 100.0);
}

std::int32_t Calculator::MinuteOf(Event event)
{
    const double minutes = (m_day.WithinDate(event) + 0.5) * kMinutesPerDay;
    // A time in the last half minute of the date would round to 24:00.
    return std::min(static_cast<std::int32_t>(std::lround(minutes)), kLastMinute);
}

std::int16_t Calculator::Horarium(std::int16_t slot)
{
    const std::optional<Event> event = EventOf(slot);
    if (!event) {
        return kNoMinute;
    }
    const std::int32_t margin = m_margins[static_cast<std::size_t>(slot - 1)];
    const std::int32_t sum = (MinuteOf(*event) + margin) % kMinutesPerDay;
    const std::int32_t minute = sum < 0 ? sum + kMinutesPerDay : sum;
    return static_cast<std::int16_t>(std::max(minute, kFirstMinute));
}

std::int16_t Calculator::QiblaDir() const
{
    return static_cast<std::int16_t>(Tenths(QiblaBearing(m_place)) % kTenthsPerTurn);
}

std::int16_t Calculator::SunElev(std::int16_t minute) const
{
    const double time = DaysFromNoon(minute);
    const Latitude& latitude = m_day.OwnLatitude();
    if (std::abs(time) <= kDaysOfTrack) {
        return Tenths(m_day.Track().Elevation(time, latitude));
    }
    return Tenths(SunTrack(m_utNoon + time, m_place.LongitudeTurns()).Elevation(0.0, latitude));
}

std::int16_t Calculator::MoonElevation(std::int16_t minute) const
{
    return Tenths(calculation::MoonElevation(m_place, m_utNoon + DaysFromNoon(minute)));
}

HijriDate Calculator::Hijri()
{
    if (!m_hijri) {
        m_hijri = HijriDateOf(m_daysSince2000);
    }
    return *m_hijri;
}

} // namespace calculation
