// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Angle.h"
#include "calculation/Days.h"
#include "calculation/EarthOrientation.h"
#include "calculation/IndependentSky.h"
#include "calculation/Reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

namespace {

using calculation::Event;
using calculation::kRadiansPerDegree;
using calculation::Place;

constexpr double kHorizon = -0.8333;

// A day at a place, asked both of the calculation and of the independent sky.
class Case final
{
public:
    Case(const Place& place, std::int32_t daysSince2000)
        : m_place(place)
        , m_noon(daysSince2000 - std::round(place.LongitudeDegrees() / 15.0) / 24.0)
        , m_day(DayOf(place, m_noon))
    {
    }

    [[nodiscard]] double Time(Event event, int index = 0) { return m_day.OfSolarDay(event, index); }

    [[nodiscard]] double Altitude(double time) const
    {
        const double days = m_noon + time;
        return independent::SunAltitude(days, calculation::DeltaT(days), m_place.LatitudeDegrees(),
                                        m_place.LongitudeDegrees());
    }

    // Degrees between both skies. Near the zenith and the nadir the sine hardly tells altitudes apart.
    [[nodiscard]] double ElevationError(double time) const
    {
        const double altitude = Altitude(time);
        const double found = m_day.Track().Elevation(time, m_day.OwnLatitude());
        return std::abs(altitude) < 88.0 ? found - altitude : 0.0;
    }

    [[nodiscard]] double HourAngle(double time) const
    {
        const double days = m_noon + time;
        return independent::SunHourAngle(days, calculation::DeltaT(days), m_place.LongitudeDegrees());
    }

    [[nodiscard]] double DegreesPerMinute(double time) const
    {
        constexpr double kHalfMinute = 0.5 / kMinutesPerDay;
        return Altitude(time + kHalfMinute) - Altitude(time - kHalfMinute);
    }

    // Degrees at which the shadow is so many lengths longer than at the transit.
    [[nodiscard]] double AsrAltitude(double lengths)
    {
        const double noon = Altitude(Time(Event::Transit)) * kRadiansPerDegree;
        return std::atan(1.0 / (1.0 / std::tan(noon) + lengths)) / kRadiansPerDegree;
    }

    [[nodiscard]] std::string Text() const
    {
        return std::to_string(m_place.latitude) + " " + std::to_string(m_place.longitude) + " " +
               std::to_string(m_noon);
    }

private:
    Place m_place;
    double m_noon;
    calculation::PrayerDay m_day;
};

// Any longitude and any day from 1900 to 2100 between two latitudes of both hemispheres, in hundredths.
class RandomDays final
{
public:
    RandomDays(unsigned seed, int leastLatitude, int mostLatitude)
        : m_generator(seed)
        , m_latitude(leastLatitude, mostLatitude)
    {
    }

    Place NextPlace()
    {
        const int latitude = m_latitude(m_generator);
        return {static_cast<Short>(m_isNorthern(m_generator) ? latitude : -latitude),
                static_cast<Short>(m_longitude(m_generator))};
    }
    std::int32_t NextDay() { return m_day(m_generator); }

private:
    std::mt19937 m_generator;
    std::bernoulli_distribution m_isNorthern;
    std::uniform_int_distribution<int> m_latitude;
    std::uniform_int_distribution<int> m_longitude{-18000, 18000};
    std::uniform_int_distribution<std::int32_t> m_day{-36524, 36524};
};

// In seconds of time; apart where the sun moves by less than 0.03 degrees a minute.
struct EventErrors
{
    ErrorStatistics quick;
    ErrorStatistics slow;

    void Add(const Case& theCase, double time, double altitude)
    {
        const double rate = theCase.DegreesPerMinute(time);
        (std::abs(rate) < 0.03 ? slow : quick)
            .Add((theCase.Altitude(time) - altitude) / rate * 60.0, theCase.Text());
    }
    void Expect(const std::string& subject, double quickLimit, double slowLimit) const
    {
        quick.Print(subject, "s");
        slow.Print(subject + " where the sun moves slowly", "s");
        EXPECT_LT(quick.Largest(), quickLimit) << quick.WorstRow();
        EXPECT_LT(slow.Largest(), slowLimit) << slow.WorstRow();
    }
};

// Either the sun is at the angle, or the portion of the night ends here and the sun is still above it.
bool IsAtLimit(const Case& theCase, double time, double limit, double angle)
{
    if (std::abs(time - limit) * 86400.0 >= 0.01) {
        return false;
    }
    EXPECT_GT(theCase.Altitude(time), angle) << theCase.Text();
    return true;
}

constexpr int kCases = 800;
constexpr double kArcsecond = 1.0 / 3600.0;

// From -1.5 to 1.5 days from noon.
double TimeOfCase(int number)
{
    return 3.0 * number / kCases - 1.5;
}

// Where every day has a sunrise and a sunset.
TEST(IndependentSky, upTo65Degrees_eachEventWhereItsRuleSaysIt)
{
    RandomDays days(424242, 0, 6500);
    ErrorStatistics transit;
    EventErrors horizon;
    EventErrors asr;
    EventErrors twilight;
    int limited = 0;
    for (int i = 0; i < kCases; ++i) {
        const Place place = days.NextPlace();
        Case theCase(place, days.NextDay());
        EXPECT_NEAR(theCase.ElevationError(TimeOfCase(i)), 0.0, kArcsecond) << theCase.Text();
        // 15 degrees in an hour.
        transit.Add(theCase.HourAngle(theCase.Time(Event::Transit)) * 240.0, theCase.Text());
        const double sunrise = theCase.Time(Event::Sunrise);
        const double sunset = theCase.Time(Event::Sunset);
        horizon.Add(theCase, sunrise, kHorizon);
        horizon.Add(theCase, sunset, kHorizon);
        asr.Add(theCase, theCase.Time(Event::AsrOneLength), theCase.AsrAltitude(1.0));
        asr.Add(theCase, theCase.Time(Event::AsrTwoLengths), theCase.AsrAltitude(2.0));

        const double fajr = theCase.Time(Event::Fajr);
        const double fajrLimit = sunrise - 18.0 / 60.0 * (sunrise - theCase.Time(Event::Sunset, -1));
        if (IsAtLimit(theCase, fajr, fajrLimit, -18.0)) {
            ++limited;
        } else {
            EXPECT_GT(fajr, fajrLimit) << theCase.Text();
            twilight.Add(theCase, fajr, -18.0);
        }
        const double isha = theCase.Time(Event::Isha);
        const double ishaLimit = sunset + 17.0 / 60.0 * (theCase.Time(Event::Sunrise, 1) - sunset);
        if (IsAtLimit(theCase, isha, ishaLimit, -17.0)) {
            ++limited;
        } else {
            EXPECT_LT(isha, ishaLimit) << theCase.Text();
            twilight.Add(theCase, isha, -17.0);
        }
    }
    transit.Print("transit", "s");
    EXPECT_LT(transit.Largest(), 0.06) << transit.WorstRow();
    horizon.Expect("sunrise and sunset", 0.2, 0.2);
    asr.Expect("Asr", 0.2, 0.5);
    twilight.Expect("twilight", 0.2, 0.2);
    EXPECT_EQ(horizon.slow.Count() + twilight.slow.Count(), 0);
    EXPECT_GT(asr.slow.Count(), 0);
    EXPECT_GT(twilight.quick.Count(), 700);
    EXPECT_GT(limited, 100);
}

// Not every day has a sunrise and a sunset there. Which have, and where the sun then stands, is for the
// independent sky to say.
TEST(IndependentSky, beyond65Degrees_ownSunriseSunsetAndAsr)
{
    RandomDays days(656565, 6500, 8999);
    EventErrors horizon;
    EventErrors asr;
    int without = 0;
    for (int i = 0; i < kCases; ++i) {
        const Place place = days.NextPlace();
        const std::int32_t date = days.NextDay();
        Case theCase(place, date);
        EXPECT_NEAR(theCase.ElevationError(TimeOfCase(i)), 0.0, kArcsecond) << theCase.Text();
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
            const Case at45({static_cast<Short>(place.latitude < 0 ? -4500 : 4500), place.longitude}, date);
            EventErrors horizon45;
            horizon45.Add(at45, sunrise, kHorizon);
            horizon45.Add(at45, sunset, kHorizon);
            EXPECT_LT(horizon45.quick.Largest(), 0.2) << theCase.Text();
            EXPECT_EQ(horizon45.quick.Count(), 2) << theCase.Text();
            continue;
        }
        horizon.Add(theCase, sunrise, kHorizon);
        horizon.Add(theCase, sunset, kHorizon);
        if (noon > 0.21) {
            asr.Add(theCase, theCase.Time(Event::AsrOneLength), theCase.AsrAltitude(1.0));
            asr.Add(theCase, theCase.Time(Event::AsrTwoLengths), theCase.AsrAltitude(2.0));
        }
    }
    // Where the sun's path almost touches the horizon, a second of arc is seconds of time.
    horizon.Expect("sunrise and sunset beyond 65 degrees", 0.25, 1.0);
    asr.Expect("Asr beyond 65 degrees", 0.2, 0.2);
    EXPECT_GT(without, 300);
    EXPECT_GT(horizon.quick.Count(), 300);
    EXPECT_GT(horizon.slow.Count(), 60);
    EXPECT_GT(asr.quick.Count(), 200);
    EXPECT_GT(asr.slow.Count(), 60);
}

} // namespace
