// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"
#include "calculation/Place.h"
#include "calculation/SunTrack.h"

#include <array>
#include <optional>

namespace calculation {

enum class Event { Fajr, Sunrise, Transit, AsrOneLength, AsrTwoLengths, Sunset, Isha };

// The events of a civil date. Times are days from the date's noon (see SunTrack). Each event belongs to a
// solar day with the index of its transit: 0 for the date's own, -1 and 1 for the neighbours.
class PrayerDay final
{
public:
    // utNoon: the date's local noon in days of UT from 2000 January 1, 12h.
    void SetPlaceAndDate(const Place& place, double utNoon);
    // Degrees, negative below the horizon, limited to the nadir (-90) and to the horizon of sunrise
    // (-0.8333).
    void SetTwilightAngles(double fajrDegrees, double ishaDegrees);

    // The event shown on the date, -0.5 <= time < 0.5: the one that falls into the date; if two do, the one
    // of the date's own solar day; if none does, the nearest one, moved by a day. Usually within 0.2 s
    // between 65 N and 65 S; limits and rules of high latitudes: docs/accuracy.md.
    [[nodiscard]] double WithinDate(Event event);
    // The event of the solar day with index -1 to 1; it may lie outside the date.
    [[nodiscard]] double OfSolarDay(Event event, int index);

    [[nodiscard]] const SunTrack& Track() const { return m_track; }
    [[nodiscard]] const Latitude& OwnLatitude() const { return m_latitude; }

private:
    struct SolarDay
    {
        double transit = 0.0;
        SineCosine declination; // at the transit
        bool isOfLatitude45 = false;
        std::optional<double> sunrise;
        std::optional<double> sunset;
    };

    struct Twilight
    {
        double sine = 0.0;           // of the altitude
        double portionOfNight = 0.0; // 0 to 0.5
    };

    static constexpr int kFirstIndex = -2;

    [[nodiscard]] static Twilight TwilightOf(double degrees);
    SolarDay& DayOf(int index);
    [[nodiscard]] bool HasSunriseAndSunset(const SolarDay& day) const;
    // Sine of the sun's altitude at the lower transit.
    [[nodiscard]] double LowestSine(double midnight, const Latitude& latitude) const;
    [[nodiscard]] double Sunrise(int index);
    [[nodiscard]] double Sunset(int index);
    [[nodiscard]] double SunriseOf(const SolarDay& day, const Latitude& latitude) const;
    [[nodiscard]] double SunsetOf(const SolarDay& day, const Latitude& latitude) const;
    [[nodiscard]] double NightBefore(int index);
    [[nodiscard]] double NightAfter(int index);
    [[nodiscard]] double Fajr(int index);
    [[nodiscard]] double Isha(int index);
    [[nodiscard]] double Asr(int index, double lengths);
    [[nodiscard]] double NoonSine(const SolarDay& day, const Latitude& latitude) const;
    [[nodiscard]] double AsrOf(const SolarDay& day, double sunset, double lengths,
                               const Latitude& latitude) const;
    [[nodiscard]] const Latitude& LatitudeOf(const SolarDay& day) const;

    SunTrack m_track;
    Latitude m_latitude;
    Latitude m_latitude45;
    double m_horizonSine = 0.0;
    Twilight m_fajr;
    Twilight m_isha;
    std::array<std::optional<SolarDay>, 5> m_days;
};

} // namespace calculation
