// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Angle.h"
#include "calculation/EarthOrientation.h"
#include "calculation/IndependentSky.h"
#include "calculation/Moon.h"
#include "calculation/Reference.h"
#include "calculation/Series.h"
#include "calculation/Sun.h"

#include <erfa.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace {

// Calls check for this many random dates of 1900 to 2100, in days since 2000.
template <typename Check>
void OnRandomDays(int count, Check check)
{
    std::mt19937 generator{20260101};
    std::uniform_real_distribution<double> days{-36525.0, 36525.0};
    for (int i = 0; i < count; ++i) {
        check(days(generator));
    }
}

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
    ErrorStatistics errors;
    OnRandomDays(3000, [&](double day) {
        errors.Add(
            independent::Separation(calculation::ApparentSunAround(day).directions[1], independent::Sun(day)),
            std::to_string(day));
    });
    errors.Print("sun", "arcseconds");
    EXPECT_LT(errors.Largest(), 0.75) << errors.WorstRow();
    // A single wrong digit in a table shows here before it shows in the largest error.
    EXPECT_LT(errors.RootMeanSquare(), 0.175);
}

TEST(Sun, dayBeforeAndAfter_asAskedForThatDay)
{
    OnRandomDays(1000, [](double day) {
        const auto directions = calculation::ApparentSunAround(day).directions;
        const auto directionOn = [](double other) {
            return calculation::ApparentSunAround(other).directions[1];
        };
        ASSERT_LT(independent::Separation(directions[0], directionOn(day - 1.0)), 0.01) << day;
        ASSERT_LT(independent::Separation(directions[2], directionOn(day + 1.0)), 0.01) << day;
    });
}

TEST(Moon, twoCenturies_withinTenArcseconds)
{
    ErrorStatistics direction;
    ErrorStatistics distance;
    OnRandomDays(1500, [&](double day) {
        const calculation::MoonPosition moon = calculation::ApparentMoon(day);
        const independent::MoonPosition independent = independent::Moon(day);
        direction.Add(independent::Separation(moon.direction, independent.direction), std::to_string(day));
        distance.Add(moon.distance * 6378.14 - independent.kilometres, std::to_string(day));
    });
    direction.Print("moon", "arcseconds");
    distance.Print("moon's distance", "km");
    EXPECT_LT(direction.Largest(), 9.0) << direction.WorstRow();
    EXPECT_LT(direction.RootMeanSquare(), 1.9);
    EXPECT_LT(distance.Largest(), 15.0) << distance.WorstRow();
}

TEST(Nutation, twoCenturies_asTheWholeTheory)
{
    ErrorStatistics errors;
    OnRandomDays(3000, [&](double day) {
        double longitude = 0.0;
        double obliquity = 0.0;
        eraNut80(2451545.0, day, &longitude, &obliquity);
        const calculation::Nutation nutation = calculation::NutationAt(day);
        errors.Add((nutation.inLongitude - longitude) / calculation::kRadiansPerArcsecond);
        errors.Add((nutation.inObliquity - obliquity) / calculation::kRadiansPerArcsecond);
    });
    errors.Print("nutation", "arcseconds");
    EXPECT_LT(errors.Largest(), 0.03);
}

TEST(MeanObliquity, twoCenturies_asTheIau)
{
    OnRandomDays(1000, [](double day) {
        ASSERT_NEAR(calculation::MeanObliquity(day), eraObl06(2451545.0, day),
                    1e-6 * calculation::kRadiansPerArcsecond);
    });
}

TEST(GreenwichMeanSiderealTime, twoCenturies_asTheIau)
{
    OnRandomDays(1000, [](double day) {
        const double found = calculation::WithinHalfTurn(calculation::GreenwichMeanSiderealTime(day));
        const double expected =
            eraGmst06(2451545.0, day, 2451545.0, day + 69.0 / 86400.0) / calculation::kTurn;
        // 0.001 s of time.
        ASSERT_LT(std::abs(calculation::WithinHalfTurn(found - expected)), 0.001 / 86400.0) << day;
    });
}

double DeltaTOfYear(double year)
{
    return calculation::DeltaT((year - 2000.0) * 365.2425 - 0.5);
}

TEST(DeltaT, knownYears_asObserved)
{
    for (const ReferenceRow& row : ReferenceTable("delta_t.csv")) {
        EXPECT_NEAR(DeltaTOfYear(row.Whole(0)), row.Number(1), row.Number(2)) << row.line;
    }
}

TEST(DeltaT, betweenTheFormulas_noJump)
{
    // At their borders the published polynomials differ by a second or two, before 1600 by some more.
    for (double year = 1600.0; year < 2200.0; year += 0.01) {
        ASSERT_NEAR(DeltaTOfYear(year + 0.01), DeltaTOfYear(year), 1.0) << year;
    }
}

TEST(DeltaT, yearsToCome_growsSlowlyFromTheLastObserved)
{
    EXPECT_NEAR(DeltaTOfYear(2050.0), 71.0, 1.0);
    EXPECT_NEAR(DeltaTOfYear(2100.0), 86.9, 1.0);
}

} // namespace
