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

// A day at a place, by the calculation and by the independent sky.
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

    // Difference of the two skies in degrees. Near the zenith and the nadir the sine hardly changes with the
    // altitude.
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

    // Altitude in degrees at which the shadow is this many lengths longer than at the transit.
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

// Errors in seconds of time; separate if the sun moves by less than 0.03 degrees a minute.
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

// Calls check with random days between two latitudes of both hemispheres, in hundredths: any longitude, 1900
// to 2100. On each of them the sun's elevation is compared, from -1.5 to 1.5 days from noon.
template <typename Check>
void OnRandomCases(unsigned seed, int leastLatitude, int mostLatitude, Check check)
{
    constexpr int kCases = 800;
    constexpr double kArcsecond = 1.0 / 3600.0;
    std::mt19937 generator(seed);
    std::bernoulli_distribution isNorthern;
    std::uniform_int_distribution<int> latitudes(leastLatitude, mostLatitude);
    std::uniform_int_distribution<int> longitudes(-18000, 18000);
    std::uniform_int_distribution<std::int32_t> days(-36524, 36524);
    for (int i = 0; i < kCases; ++i) {
        const int latitude = latitudes(generator);
        const Place place{static_cast<Short>(isNorthern(generator) ? latitude : -latitude),
                          static_cast<Short>(longitudes(generator))};
        const std::int32_t date = days(generator);
        Case theCase(place, date);
        SCOPED_TRACE(theCase.Text());
        EXPECT_NEAR(theCase.ElevationError(3.0 * i / kCases - 1.5), 0.0, kArcsecond);
        check(theCase, place, date);
    }
}

// Where every day has a sunrise and a sunset.
TEST(IndependentSky, upTo65Degrees_eachEventByItsRule)
{
    ErrorStatistics transit;
    EventErrors horizon;
    EventErrors asr;
    EventErrors twilight;
    int limited = 0;
    OnRandomCases(424242, 0, 6500, [&](Case& theCase, const Place& /*place*/, std::int32_t /*date*/) {
        // 15 degrees in an hour.
        transit.Add(theCase.HourAngle(theCase.Time(Event::Transit)) * 240.0, theCase.Text());
        const double sunrise = theCase.Time(Event::Sunrise);
        const double sunset = theCase.Time(Event::Sunset);
        horizon.Add(theCase, sunrise, kHorizon);
        horizon.Add(theCase, sunset, kHorizon);
        asr.Add(theCase, theCase.Time(Event::AsrOneLength), theCase.AsrAltitude(1.0));
        asr.Add(theCase, theCase.Time(Event::AsrTwoLengths), theCase.AsrAltitude(2.0));
        // Either the sun is at the angle, or the portion of the night ends here and the sun is still above
        // it.
        const auto checkTwilight = [&](double time, double angle, double edge, double night) {
            const double portion = (time - edge) / night;
            const double largest = -angle / 60.0;
            if (std::abs(portion - largest) * std::abs(night) * 86400.0 < 0.01) {
                ++limited;
                EXPECT_GT(theCase.Altitude(time), angle);
            } else {
                EXPECT_LT(portion, largest);
                twilight.Add(theCase, time, angle);
            }
        };
        checkTwilight(theCase.Time(Event::Fajr), -18.0, sunrise, theCase.Time(Event::Sunset, -1) - sunrise);
        checkTwilight(theCase.Time(Event::Isha), -17.0, sunset, theCase.Time(Event::Sunrise, 1) - sunset);
    });
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

// Not every day has a sunrise and a sunset there. The independent sky tells which days have them.
TEST(IndependentSky, beyond65Degrees_ownSunriseSunsetAndAsr)
{
    EventErrors horizon;
    EventErrors horizon45;
    EventErrors asr;
    OnRandomCases(656565, 6500, 8999, [&](Case& theCase, const Place& place, std::int32_t date) {
        const double transit = theCase.Time(Event::Transit);
        const double noon = theCase.Altitude(transit);
        const double lowest = std::max(theCase.Altitude(transit - 0.5), theCase.Altitude(transit + 0.5));
        const double spare = std::min(noon - kHorizon, kHorizon - lowest);
        if (std::abs(spare) < 0.001) {
            return; // the two skies may differ
        }
        const Place at45{static_cast<Short>(place.latitude < 0 ? -4500 : 4500), place.longitude};
        const Case which = spare < 0.0 ? Case(at45, date) : theCase;
        EventErrors& errors = spare < 0.0 ? horizon45 : horizon;
        errors.Add(which, theCase.Time(Event::Sunrise), kHorizon);
        errors.Add(which, theCase.Time(Event::Sunset), kHorizon);
        if (spare > 0.0 && noon > 0.21) {
            asr.Add(theCase, theCase.Time(Event::AsrOneLength), theCase.AsrAltitude(1.0));
            asr.Add(theCase, theCase.Time(Event::AsrTwoLengths), theCase.AsrAltitude(2.0));
        }
    });
    // If the sun's path almost touches the horizon, a second of arc is seconds of time.
    horizon.Expect("sunrise and sunset beyond 65 degrees", 0.25, 1.0);
    horizon45.Expect("the same by latitude 45", 0.2, 0.2);
    asr.Expect("Asr beyond 65 degrees", 0.2, 0.2);
    EXPECT_GT(horizon45.quick.Count(), 600);
    EXPECT_EQ(horizon45.slow.Count(), 0);
    EXPECT_GT(horizon.quick.Count(), 300);
    EXPECT_GT(horizon.slow.Count(), 60);
    EXPECT_GT(asr.quick.Count(), 200);
    EXPECT_GT(asr.slow.Count(), 60);
}

} // namespace
