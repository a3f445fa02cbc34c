// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"
#include "calculation/EarthOrientation.h"
#include "calculation/ErrorStatistics.h"
#include "calculation/IndependentSky.h"
#include "calculation/Moon.h"
#include "calculation/PrayerDay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <string>
#include <utility>

namespace {

using calculation::Event;
using calculation::Place;
using calculation::PrayerDay;

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
constexpr double kSecondsPerDay = 86400.0;

// A day at a place, asked both of the calculation and of the independent sky.
class Case final
{
public:
    Case(const Place& place, std::int32_t daysSince2000, double fajrAngle, double ishaAngle)
        : m_place(place)
        , m_noon(daysSince2000 - std::round(place.LongitudeDegrees() / 15.0) / 24.0)
    {
        m_day.SetPlaceAndDate(place, m_noon);
        m_day.SetTwilightAngles(fajrAngle, ishaAngle);
    }

    [[nodiscard]] double Time(Event event, int index = 0) { return m_day.OfSolarDay(event, index); }

    [[nodiscard]] double Altitude(double time) const
    {
        const double days = m_noon + time;
        return independent::SunAltitude(days, calculation::DeltaT(days), m_place.LatitudeDegrees(),
                                        m_place.LongitudeDegrees());
    }

    [[nodiscard]] double HourAngle(double time) const
    {
        const double days = m_noon + time;
        return independent::SunHourAngle(days, calculation::DeltaT(days), m_place.LongitudeDegrees());
    }

    [[nodiscard]] double DegreesPerMinute(double time) const
    {
        constexpr double kHalfMinute = 0.5 / 1440.0;
        return Altitude(time + kHalfMinute) - Altitude(time - kHalfMinute);
    }

    // Seconds from the instant when the sun stands at the altitude.
    [[nodiscard]] double Error(double time, double altitude) const
    {
        return (Altitude(time) - altitude) / DegreesPerMinute(time) * 60.0;
    }

    [[nodiscard]] std::string Text() const
    {
        return std::to_string(m_place.latitude) + " " + std::to_string(m_place.longitude) + " " +
               std::to_string(m_noon);
    }

private:
    Place m_place;
    double m_noon;
    PrayerDay m_day;
};

class RandomCases final
{
public:
    Case operator()(double fajrAngle, double ishaAngle)
    {
        const Place place{static_cast<std::int16_t>(m_latitude(m_generator)),
                          static_cast<std::int16_t>(m_longitude(m_generator))};
        return {place, m_day(m_generator), fajrAngle, ishaAngle};
    }

private:
    std::mt19937 m_generator{424242};
    // Where every day has a sunrise and a sunset.
    std::uniform_int_distribution<int> m_latitude{-6500, 6500};
    std::uniform_int_distribution<int> m_longitude{-18000, 18000};
    std::uniform_int_distribution<std::int32_t> m_day{-36524, 36524};
};

struct EventErrors
{
    ErrorStatistics quick;
    ErrorStatistics slow; // where the sun moves under 0.03 degrees a minute

    void Add(const Case& theCase, double time, double altitude)
    {
        const double rate = theCase.DegreesPerMinute(time);
        auto& errors = std::abs(rate) < 0.03 ? slow : quick;
        errors.Add((theCase.Altitude(time) - altitude) / rate * 60.0, theCase.Text());
    }
    void Expect(const std::string& subject, bool hasSlow) const
    {
        quick.Print(subject, "s");
        if (hasSlow) {
            slow.Print(subject + " where the sun moves slowly", "s");
        }
        EXPECT_GT(quick.Count(), 700);
        EXPECT_EQ(slow.Count() > 0, hasSlow);
        EXPECT_LT(quick.Largest(), 0.2) << quick.WorstRow();
        EXPECT_LT(slow.Largest(), 0.5) << slow.WorstRow();
    }
};

constexpr int kCases = 800;

TEST(IndependentSky, transit_atHourAngleZero)
{
    RandomCases cases;
    ErrorStatistics errors;
    for (int i = 0; i < kCases; ++i) {
        Case theCase = cases(-18.0, -17.0);
        // 15 degrees in an hour.
        errors.Add(theCase.HourAngle(theCase.Time(Event::Transit)) * 240.0, theCase.Text());
    }
    errors.Print("transit", "s");
    EXPECT_LT(errors.Largest(), 0.06) << errors.WorstRow();
}

TEST(IndependentSky, sunriseAndSunset_upperEdgeAtTheHorizon)
{
    RandomCases cases;
    EventErrors errors;
    for (int i = 0; i < kCases; ++i) {
        Case theCase = cases(-18.0, -17.0);
        errors.Add(theCase, theCase.Time(Event::Sunrise), -0.8333);
        errors.Add(theCase, theCase.Time(Event::Sunset), -0.8333);
    }
    errors.Expect("sunrise and sunset", false);
}

TEST(IndependentSky, asr_shadowBeyondThatOfTheTransit)
{
    RandomCases cases;
    EventErrors errors;
    for (int i = 0; i < kCases; ++i) {
        Case theCase = cases(-18.0, -17.0);
        const double noon = theCase.Altitude(theCase.Time(Event::Transit)) * kRadiansPerDegree;
        const double shadow = 1.0 / std::tan(noon);
        errors.Add(theCase, theCase.Time(Event::AsrOneLength),
                   std::atan(1.0 / (shadow + 1.0)) / kRadiansPerDegree);
        errors.Add(theCase, theCase.Time(Event::AsrTwoLengths),
                   std::atan(1.0 / (shadow + 2.0)) / kRadiansPerDegree);
    }
    errors.Expect("Asr", true);
}

// Either the sun is at the angle, or the portion of the night ends here and the sun is still above it.
TEST(IndependentSky, twilight_atTheAngleOrAtTheEndOfItsPortionOfTheNight)
{
    RandomCases cases;
    EventErrors errors;
    int bounded = 0;
    for (int i = 0; i < kCases; ++i) {
        Case theCase = cases(-18.0, -17.0);
        const double sunrise = theCase.Time(Event::Sunrise);
        const double sunset = theCase.Time(Event::Sunset);
        const double fajr = theCase.Time(Event::Fajr);
        const double isha = theCase.Time(Event::Isha);
        const double fajrBound = sunrise - 18.0 / 60.0 * (sunrise - theCase.Time(Event::Sunset, -1));
        const double ishaBound = sunset + 17.0 / 60.0 * (theCase.Time(Event::Sunrise, 1) - sunset);
        if (std::abs(fajr - fajrBound) * kSecondsPerDay < 0.01) {
            ++bounded;
            EXPECT_GT(theCase.Altitude(fajr), -18.0) << theCase.Text();
        } else {
            EXPECT_GT(fajr, fajrBound) << theCase.Text();
            errors.Add(theCase, fajr, -18.0);
        }
        if (std::abs(isha - ishaBound) * kSecondsPerDay < 0.01) {
            ++bounded;
            EXPECT_GT(theCase.Altitude(isha), -17.0) << theCase.Text();
        } else {
            EXPECT_LT(isha, ishaBound) << theCase.Text();
            errors.Add(theCase, isha, -17.0);
        }
    }
    errors.Expect("twilight", false);
    EXPECT_GT(bounded, 100);
}

TEST(IndependentSky, sunElevation_anyMinute)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> times(-1.5, 1.5);
    std::uniform_int_distribution<int> latitudes(-9000, 9000);
    std::uniform_int_distribution<int> longitudes(-18000, 18000);
    std::uniform_int_distribution<int> days(-36524, 36524);
    ErrorStatistics errors;
    for (int i = 0; i < kCases; ++i) {
        const Place place{static_cast<std::int16_t>(latitudes(generator)),
                          static_cast<std::int16_t>(longitudes(generator))};
        const double noon = days(generator);
        const double time = times(generator);
        const calculation::SunTrack track(noon, place.LongitudeTurns());
        const double found =
            track.Elevation(time, calculation::Latitude::FromDegrees(place.LatitudeDegrees()));
        errors.Add(found - independent::SunAltitude(noon + time, calculation::DeltaT(noon + time),
                                                    place.LatitudeDegrees(), place.LongitudeDegrees()));
    }
    errors.Print("sun's elevation", "degrees");
    // One second of arc.
    EXPECT_LT(errors.Largest(), 1.0 / 3600.0);
}

// Beyond 65 degrees not every day has a sunrise and a sunset. Which have, and where the sun then stands, is
// for the independent sky to say.
class PolarCases final
{
public:
    // Latitudes from 65 to 89.99 degrees, north and south.
    std::pair<Place, std::int32_t> operator()()
    {
        const int latitude = m_latitude(m_generator);
        const Place place{static_cast<std::int16_t>(m_isNorthern(m_generator) ? latitude : -latitude),
                          static_cast<std::int16_t>(m_longitude(m_generator))};
        return {place, m_day(m_generator)};
    }

private:
    std::mt19937 m_generator{656565};
    std::bernoulli_distribution m_isNorthern;
    std::uniform_int_distribution<int> m_latitude{6500, 8999};
    std::uniform_int_distribution<int> m_longitude{-18000, 18000};
    std::uniform_int_distribution<std::int32_t> m_day{-36524, 36524};
};

TEST(IndependentSky, beyond65Degrees_ownSunriseSunsetAndAsr)
{
    constexpr double kHorizon = -0.8333;
    constexpr int kPolarCases = 800;
    PolarCases cases;
    EventErrors horizon;
    EventErrors asr;
    int without = 0;
    for (int i = 0; i < kPolarCases; ++i) {
        const auto [place, date] = cases();
        Case theCase(place, date, -18.0, -17.0);
        const double transit = theCase.Time(Event::Transit);
        const double noon = theCase.Altitude(transit);
        const double lowest = std::max(theCase.Altitude(transit - 0.5), theCase.Altitude(transit + 0.5));
        const double spare = std::min(noon - kHorizon, kHorizon - lowest);
        const double sunrise = theCase.Time(Event::Sunrise);
        const double sunset = theCase.Time(Event::Sunset);
        if (std::abs(spare) < 0.001) {
            continue; // the two skies may differ
        }
        if (spare < 0.0) {
            ++without;
            Case at45({static_cast<std::int16_t>(place.latitude < 0 ? -4500 : 4500), place.longitude}, date,
                      -18.0, -17.0);
            EXPECT_LT(std::abs(at45.Error(sunrise, kHorizon)), 0.2) << theCase.Text();
            EXPECT_LT(std::abs(at45.Error(sunset, kHorizon)), 0.2) << theCase.Text();
            continue;
        }
        horizon.Add(theCase, sunrise, kHorizon);
        horizon.Add(theCase, sunset, kHorizon);
        if (noon > 0.21) {
            const double shadow = 1.0 / std::tan(noon * kRadiansPerDegree);
            for (const auto& [event, lengths] :
                 {std::pair{Event::AsrOneLength, 1.0}, std::pair{Event::AsrTwoLengths, 2.0}}) {
                asr.Add(theCase, theCase.Time(event),
                        std::atan(1.0 / (shadow + lengths)) / kRadiansPerDegree);
            }
        }
    }
    horizon.quick.Print("sunrise and sunset beyond 65 degrees", "s");
    horizon.slow.Print("the same where the sun moves slowly", "s");
    asr.quick.Print("Asr beyond 65 degrees", "s");
    asr.slow.Print("the same where the sun moves slowly", "s");
    EXPECT_GT(without, 300);
    EXPECT_GT(horizon.quick.Count(), 300);
    EXPECT_GT(horizon.slow.Count(), 60);
    EXPECT_GT(asr.quick.Count(), 200);
    EXPECT_GT(asr.slow.Count(), 60);
    EXPECT_LT(horizon.quick.Largest(), 0.25) << horizon.quick.WorstRow();
    // Where the sun's path almost touches the horizon, a second of arc is seconds of time.
    EXPECT_LT(horizon.slow.Largest(), 1.0) << horizon.slow.WorstRow();
    EXPECT_LT(asr.quick.Largest(), 0.2) << asr.quick.WorstRow();
    EXPECT_LT(asr.slow.Largest(), 0.2) << asr.slow.WorstRow();
}

} // namespace
