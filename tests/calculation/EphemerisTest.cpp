// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Angle.h"
#include "calculation/EarthOrientation.h"
#include "calculation/ErrorStatistics.h"
#include "calculation/IndependentSky.h"
#include "calculation/Moon.h"
#include "calculation/Series.h"
#include "calculation/Sun.h"

#include <erfa.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace {

// 1900 to 2100, in days from 2000.
class RandomDays final
{
public:
    double operator()() { return m_distribution(m_generator); }

private:
    std::mt19937 m_generator{20260101};
    std::uniform_real_distribution<double> m_distribution{-36525.0, 36525.0};
};

TEST(Cosine, anglesOfManyTurns_asTheLibrary)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> angles(-6000.0, 6000.0);
    for (int i = 0; i < 10000; ++i) {
        const double angle = angles(generator);
        ASSERT_NEAR(calculation::Cosine(angle), std::cos(angle), 3e-11) << angle;
    }
}

TEST(Sun, twoCenturies_withinOneArcsecond)
{
    RandomDays days;
    ErrorStatistics errors;
    for (int i = 0; i < 3000; ++i) {
        const double day = days();
        errors.Add(
            independent::Separation(calculation::ApparentSunAround(day).directions[1], independent::Sun(day)),
            std::to_string(day));
    }
    errors.Print("sun", "arcseconds");
    EXPECT_LT(errors.Largest(), 0.75) << errors.WorstRow();
    // A single wrong digit in a table shows here before it shows in the largest error.
    EXPECT_LT(errors.RootMeanSquare(), 0.175);
}

TEST(Sun, dayBeforeAndAfter_asAskedForThatDay)
{
    RandomDays days;
    ErrorStatistics errors;
    for (int i = 0; i < 1000; ++i) {
        const double day = days();
        const calculation::SunAround sun = calculation::ApparentSunAround(day);
        errors.Add(independent::Separation(sun.directions[0],
                                           calculation::ApparentSunAround(day - 1.0).directions[1]));
        errors.Add(independent::Separation(sun.directions[2],
                                           calculation::ApparentSunAround(day + 1.0).directions[1]));
    }
    EXPECT_LT(errors.Largest(), 0.01);
}

TEST(Moon, twoCenturies_withinTenArcseconds)
{
    RandomDays days;
    ErrorStatistics direction;
    ErrorStatistics distance;
    for (int i = 0; i < 1500; ++i) {
        const double day = days();
        const calculation::MoonPosition moon = calculation::ApparentMoon(day);
        const independent::MoonPosition independent = independent::Moon(day);
        direction.Add(independent::Separation(moon.direction, independent.direction), std::to_string(day));
        distance.Add(moon.distance * 6378.14 - independent.kilometres, std::to_string(day));
    }
    direction.Print("moon", "arcseconds");
    distance.Print("moon's distance", "km");
    EXPECT_LT(direction.Largest(), 9.0) << direction.WorstRow();
    EXPECT_LT(direction.RootMeanSquare(), 1.9);
    EXPECT_LT(distance.Largest(), 15.0) << distance.WorstRow();
}

TEST(Nutation, twoCenturies_asTheWholeTheory)
{
    RandomDays days;
    ErrorStatistics errors;
    for (int i = 0; i < 3000; ++i) {
        const double day = days();
        double longitude = 0.0;
        double obliquity = 0.0;
        eraNut80(2451545.0, day, &longitude, &obliquity);
        const calculation::Nutation nutation = calculation::NutationAt(day);
        errors.Add((nutation.inLongitude - longitude) / calculation::kRadiansPerArcsecond);
        errors.Add((nutation.inObliquity - obliquity) / calculation::kRadiansPerArcsecond);
    }
    errors.Print("nutation", "arcseconds");
    EXPECT_LT(errors.Largest(), 0.03);
}

TEST(MeanObliquity, twoCenturies_asTheIau)
{
    RandomDays days;
    for (int i = 0; i < 1000; ++i) {
        const double day = days();
        ASSERT_NEAR(calculation::MeanObliquity(day), eraObl06(2451545.0, day),
                    1e-6 * calculation::kRadiansPerArcsecond);
    }
}

TEST(GreenwichMeanSiderealTime, twoCenturies_asTheIau)
{
    RandomDays days;
    for (int i = 0; i < 1000; ++i) {
        const double day = days();
        const double found = calculation::WithinHalfTurn(calculation::GreenwichMeanSiderealTime(day));
        const double expected =
            eraGmst06(2451545.0, day, 2451545.0, day + 69.0 / 86400.0) / calculation::kTurn;
        // 0.001 s of time.
        ASSERT_LT(std::abs(calculation::WithinHalfTurn(found - expected)), 0.001 / 86400.0) << day;
    }
}

} // namespace
