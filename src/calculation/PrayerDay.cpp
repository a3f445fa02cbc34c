// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/PrayerDay.h"

#include "calculation/Angle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace calculation {

namespace {

constexpr double kHalfDay = 0.5;
// Altitude of the sun's centre when its upper edge is on the horizon: 34' of refraction and 16' of radius
// (Meeus, "Astronomical Algorithms", 2nd ed., chapter 15).
constexpr double kHorizonDegrees = -0.8333;
// A day without sunrise or sunset is computed for this latitude (Islamic Fiqh Council of the Muslim World
// League, 9th session, Makkah, 1986).
constexpr double kLatitudeOfOrdinaryDays = 45.0;
// If the noon sun is lower, its shadow is hundreds of lengths long and one more length takes a minute or
// less: Asr would fall on Duhr, and only the first of two slots with the same minute is announced.
constexpr double kLeastNoonDegrees = 0.2;
// The angle whose portion of the night is the whole night.
constexpr double kDegreesOfNight = 60.0;

// Hour angle (Meeus, "Astronomical Algorithms", 2nd ed., formula 15.1) in days, 0 to 0.5, at which a sun of
// the given declination has the given sine of altitude.
double HourAngle(double sineOfAltitude, const SineCosine& declination, const Latitude& latitude)
{
    const double cosine = (sineOfAltitude - latitude.Sine() * declination.sine) /
                          std::max(latitude.Cosine() * declination.cosine, 1e-9);
    return std::acos(std::clamp(cosine, -1.0, 1.0)) / kTurn;
}

double DistanceFromDate(double time)
{
    return std::max(-kHalfDay - time, time - kHalfDay);
}

bool IsWithinDate(double time)
{
    return time >= -kHalfDay && time < kHalfDay;
}

} // namespace

void PrayerDay::SetPlaceAndDate(const Place& place, double utNoon)
{
    m_track = SunTrack(utNoon, place.LongitudeTurns());
    m_latitude = Latitude::FromDegrees(place.LatitudeDegrees());
    m_latitude45 =
        Latitude::FromDegrees(m_latitude.IsNorthern() ? kLatitudeOfOrdinaryDays : -kLatitudeOfOrdinaryDays);
    m_horizonSine = m_track.GeocentricSine(std::sin(kHorizonDegrees * kRadiansPerDegree));
    m_days = {};
}

void PrayerDay::SetTwilightAngles(double fajrDegrees, double ishaDegrees)
{
    m_fajr = TwilightOf(fajrDegrees);
    m_isha = TwilightOf(ishaDegrees);
}

PrayerDay::Twilight PrayerDay::TwilightOf(double degrees)
{
    const double altitude = std::clamp(degrees, -90.0, kHorizonDegrees);
    return {std::sin(altitude * kRadiansPerDegree), std::min(-altitude / kDegreesOfNight, 0.5)};
}

double PrayerDay::WithinDate(Event event)
{
    const double own = OfSolarDay(event, 0);
    if (IsWithinDate(own)) {
        return own;
    }
    const double neighbour = OfSolarDay(event, own < 0.0 ? 1 : -1);
    const double nearest = DistanceFromDate(neighbour) < DistanceFromDate(own) ? neighbour : own;
    // Events lie within a day and a half of noon, so that a shift by one day brings each into the date.
    const double shown = nearest - std::floor(nearest + kHalfDay);
    return IsWithinDate(shown) ? shown : -kHalfDay;
}

double PrayerDay::OfSolarDay(Event event, int index)
{
    switch (event) {
    case Event::Fajr:
        return Fajr(index);
    case Event::Sunrise:
        return Sunrise(index);
    case Event::Transit:
        return DayOf(index).transit;
    case Event::AsrOneLength:
        return Asr(index, 1.0);
    case Event::AsrTwoLengths:
        return Asr(index, 2.0);
    case Event::Sunset:
        return Sunset(index);
    case Event::Isha:
        return Isha(index);
    }
    return 0.0;
}

PrayerDay::SolarDay& PrayerDay::DayOf(int index)
{
    std::optional<SolarDay>& day = m_days[static_cast<std::size_t>(index - kFirstIndex)];
    if (!day) {
        const double transit = m_track.Transit(index);
        day = SolarDay{transit, m_track.Declination(transit), false, std::nullopt, std::nullopt};
        day->isOfLatitude45 = !HasSunriseAndSunset(*day);
    }
    return *day;
}

const Latitude& PrayerDay::LatitudeOf(const SolarDay& day) const
{
    return day.isOfLatitude45 ? m_latitude45 : m_latitude;
}

bool PrayerDay::HasSunriseAndSunset(const SolarDay& day) const
{
    return SunTrack::UpperSine(day.declination, m_latitude) > m_horizonSine &&
           LowestSine(day.transit - kHalfDay, m_latitude) < m_horizonSine &&
           LowestSine(day.transit + kHalfDay, m_latitude) < m_horizonSine;
}

double PrayerDay::LowestSine(double midnight, const Latitude& latitude) const
{
    return SunTrack::LowerSine(m_track.Declination(midnight), latitude);
}

double PrayerDay::Sunrise(int index)
{
    SolarDay& day = DayOf(index);
    if (!day.sunrise) {
        day.sunrise = SunriseOf(day, LatitudeOf(day));
    }
    return *day.sunrise;
}

double PrayerDay::SunriseOf(const SolarDay& day, const Latitude& latitude) const
{
    const double hourAngle = HourAngle(m_horizonSine, day.declination, latitude);
    return m_track.TimeOf({day.transit - kHalfDay, day.transit, m_horizonSine, day.transit - hourAngle},
                          latitude);
}

double PrayerDay::Sunset(int index)
{
    SolarDay& day = DayOf(index);
    if (!day.sunset) {
        day.sunset = SunsetOf(day, LatitudeOf(day));
    }
    return *day.sunset;
}

double PrayerDay::SunsetOf(const SolarDay& day, const Latitude& latitude) const
{
    const double hourAngle = HourAngle(m_horizonSine, day.declination, latitude);
    return m_track.TimeOf({day.transit + kHalfDay, day.transit, m_horizonSine, day.transit + hourAngle},
                          latitude);
}

// Length of the night: from sunset to sunrise if both days are computed for the same latitude. Otherwise a
// day of latitude 45 has the night of latitude 45, and a day of its own latitude has twice its own half of
// the night.
double PrayerDay::NightBefore(int index)
{
    const SolarDay& day = DayOf(index);
    const SolarDay& before = DayOf(index - 1);
    if (day.isOfLatitude45 == before.isOfLatitude45) {
        return Sunrise(index) - Sunset(index - 1);
    }
    return day.isOfLatitude45 ? Sunrise(index) - SunsetOf(before, m_latitude45)
                              : 2.0 * (Sunrise(index) - (day.transit - kHalfDay));
}

double PrayerDay::NightAfter(int index)
{
    const SolarDay& day = DayOf(index);
    const SolarDay& after = DayOf(index + 1);
    if (day.isOfLatitude45 == after.isOfLatitude45) {
        return Sunrise(index + 1) - Sunset(index);
    }
    return day.isOfLatitude45 ? SunriseOf(after, m_latitude45) - Sunset(index)
                              : 2.0 * (day.transit + kHalfDay - Sunset(index));
}

// The angle-based rule for nights without darkness: the event lies within a portion of the night next to
// sunrise or sunset, the angle divided by 60 degrees. If the sun reaches the angle within that portion, the
// event is at that moment, so that there is no jump between the two (Zarrabi-Zadeh, "Prayer Times
// Calculation", section on higher latitudes).
double PrayerDay::Fajr(int index)
{
    const SolarDay& day = DayOf(index);
    const double midnight = day.transit - kHalfDay;
    const double sunrise = Sunrise(index);
    const double limit = sunrise - m_fajr.portionOfNight * NightBefore(index);

    const Latitude& latitude = LatitudeOf(day);
    const double sine = m_track.GeocentricSine(m_fajr.sine);
    if (LowestSine(midnight, latitude) >= sine) {
        return limit;
    }
    const double guess = day.transit - HourAngle(sine, day.declination, latitude);
    return std::max(limit, m_track.TimeOf({midnight, sunrise, sine, guess}, latitude));
}

double PrayerDay::Isha(int index)
{
    const SolarDay& day = DayOf(index);
    const double midnight = day.transit + kHalfDay;
    const double sunset = Sunset(index);
    const double limit = sunset + m_isha.portionOfNight * NightAfter(index);

    const Latitude& latitude = LatitudeOf(day);
    const double sine = m_track.GeocentricSine(m_isha.sine);
    if (LowestSine(midnight, latitude) >= sine) {
        return limit;
    }
    const double guess = day.transit + HourAngle(sine, day.declination, latitude);
    return std::min(limit, m_track.TimeOf({midnight, sunset, sine, guess}, latitude));
}

double PrayerDay::Asr(int index, double lengths)
{
    const double leastNoonSine = std::sin(kLeastNoonDegrees * kRadiansPerDegree);
    const SolarDay& day = DayOf(index);
    const Latitude& latitude = LatitudeOf(day);
    const double sunset = Sunset(index);
    if (NoonSine(day, latitude) > leastNoonSine) {
        return AsrOf(day, sunset, lengths, latitude);
    }
    // The noon sun is too low to measure a shadow. Asr divides the afternoon as at latitude 45: the clock
    // time of latitude 45, whose afternoon is longer, would be after Maghrib.
    const double sunset45 = SunsetOf(day, m_latitude45);
    const double asr45 = AsrOf(day, sunset45, lengths, m_latitude45);
    return day.transit + (asr45 - day.transit) / (sunset45 - day.transit) * (sunset - day.transit);
}

double PrayerDay::NoonSine(const SolarDay& day, const Latitude& latitude) const
{
    return m_track.TopocentricSine(SunTrack::UpperSine(day.declination, latitude));
}

double PrayerDay::AsrOf(const SolarDay& day, double sunset, double lengths, const Latitude& latitude) const
{
    // The shadow of an object of length 1 is the cotangent of the sun's altitude.
    const double noon = NoonSine(day, latitude);
    const double shadow = std::sqrt(1.0 - noon * noon) / noon + lengths;
    const double sine = m_track.GeocentricSine(1.0 / std::sqrt(1.0 + shadow * shadow));
    const double guess = day.transit + HourAngle(sine, day.declination, latitude);
    return m_track.TimeOf({sunset, day.transit, sine, guess}, latitude);
}

} // namespace calculation
