// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Reference.h"

#include "calculation/Days.h"
#include "calculation/Moon.h"

#include <gtest/gtest.h>

namespace {

using calculation::Place;
using calculation::QiblaBearing;

TEST(Elevation, everyRowOfTheTable_withinItsLimit)
{
    ErrorStatistics sun;
    ErrorStatistics moon;
    ErrorStatistics sunInTenths;
    ErrorStatistics moonInTenths;
    for (const ReferenceRow& row : ReferenceTable("elevations.csv")) {
        const Place place{row.Whole(0), row.Whole(1)};
        const double noon = calculation::DaysSince2000(row.Whole(3), row.Whole(4), row.Whole(5)) -
                            row.Whole(2) / kMinutesPerDay;
        const double time = row.Whole(6) / kMinutesPerDay - 0.5;
        const calculation::SunTrack track(noon, place.LongitudeTurns());
        const auto latitude = calculation::Latitude::FromDegrees(place.LatitudeDegrees());
        sun.Add(track.Elevation(time, latitude) - row.Number(7), row.line);
        moon.Add(MoonElevation(place, noon + time) - row.Number(9), row.line);

        const auto calculator = CalculatorOf(place, row.Whole(2), row.Whole(3), row.Whole(4), row.Whole(5));
        sunInTenths.Add(calculator.SunElev(row.Whole(6)) / 10.0 - row.Number(7), row.line);
        moonInTenths.Add(calculator.MoonElevation(row.Whole(6)) / 10.0 - row.Number(9), row.line);
    }
    sun.Print("sun's elevation", "degrees");
    moon.Print("moon's elevation", "degrees");
    EXPECT_EQ(sun.Count(), 500);
    EXPECT_LT(sun.Largest(), 0.0007) << sun.WorstRow();
    EXPECT_LT(moon.Largest(), 0.0025) << moon.WorstRow();
    // The nearest tenth.
    EXPECT_LT(sunInTenths.Largest(), 0.051) << sunInTenths.WorstRow();
    EXPECT_LT(moonInTenths.Largest(), 0.052) << moonInTenths.WorstRow();
}

double QiblaDir(const Place& place)
{
    return CalculatorOf(place, 0, 1, 1, 2000).QiblaDir() / 10.0;
}

TEST(Qibla, everyRowOfTheTable_withinItsLimit)
{
    ErrorStatistics exact;
    ErrorStatistics tenths;
    for (const ReferenceRow& row : ReferenceTable("qibla.csv")) {
        const Place place{row.Whole(0), row.Whole(1)};
        exact.Add(std::remainder(QiblaBearing(place) - row.Number(2), 360.0), row.line);
        tenths.Add(std::remainder(QiblaDir(place) - row.Number(2), 360.0), row.line);
    }
    exact.Print("qibla", "degrees");
    EXPECT_EQ(exact.Count(), 60);
    EXPECT_LT(exact.Largest(), 0.0001) << exact.WorstRow();
    EXPECT_LT(tenths.Largest(), 0.0501) << tenths.WorstRow();
}

// The Kaaba and its antipode, where the bearing is not defined, and the poles, where it depends on the
// longitude.
TEST(Qibla, kaabaAntipodeAndPoles_definedBearing)
{
    struct Row
    {
        const char* name;
        Place place;
        double degrees;
        double tolerance;
    };
    constexpr Row kRows[]{
        {"at the Kaaba", {2142, 3983}, 0.0, 0.0},
        {"the next place that can be named", {2142, 3982}, 66.6, 0.0},
        {"at the antipode", {-2142, -14017}, 0.0, 0.0},
        {"north pole", {9000, 0}, 180.0 - 39.8262, 0.0501},
        {"north pole on the Kaaba's meridian", {9000, 3983}, 180.0, 0.0501},
        {"south pole", {-9000, 0}, 39.8262, 0.0501},
        {"south pole on the antipode's meridian", {-9000, -14017}, 180.0, 0.0501},
    };
    for (const Row& row : kRows) {
        EXPECT_NEAR(QiblaDir(row.place), row.degrees, row.tolerance) << row.name;
    }
}

TEST(Qibla, bearingJustBelowNorth_roundsToNorthAndNotToAWholeTurn)
{
    // A place south of the Kaaba and a little east of its meridian.
    const Place place{-5000, 3985};
    ASSERT_GT(QiblaBearing(place), 359.95);
    EXPECT_EQ(QiblaDir(place), 0.0);
}

} // namespace
