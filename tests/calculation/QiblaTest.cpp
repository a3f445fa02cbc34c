// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"
#include "calculation/ErrorStatistics.h"
#include "calculation/Place.h"
#include "calculation/ReferenceTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace {

using calculation::Place;
using calculation::QiblaBearing;

double QiblaDir(const Place& place)
{
    calculation::Calculator calculator;
    calculator.SetHorParams(place, 0, 1, 1, 2000);
    return calculator.QiblaDir() / 10.0;
}

TEST(Qibla, everyRowOfTheTable_withinItsLimit)
{
    ErrorStatistics exact;
    ErrorStatistics tenths;
    const ReferenceTable table("qibla.csv");
    for (const ReferenceTable::Row& row : table.Rows()) {
        const Place place{row.Whole(0), row.Whole(1)};
        exact.Add(std::remainder(QiblaBearing(place) - row.Number(2), 360.0), row.Line());
        tenths.Add(std::remainder(QiblaDir(place) - row.Number(2), 360.0), row.Line());
    }
    exact.Print("qibla", "degrees");
    tenths.Print("qibla in tenths", "degrees");
    EXPECT_EQ(exact.Count(), 60);
    EXPECT_LT(exact.Largest(), 0.0001) << exact.WorstRow();
    EXPECT_LT(tenths.Largest(), 0.0501) << tenths.WorstRow();
}

TEST(Qibla, atTheKaaba_north)
{
    EXPECT_EQ(QiblaDir({2142, 3983}), 0.0);
    // The next place that can be named has a direction.
    EXPECT_EQ(QiblaDir({2142, 3982}), 66.6);
}

TEST(Qibla, atItsAntipode_north)
{
    EXPECT_EQ(QiblaDir({-2142, -14017}), 0.0);
}

TEST(Qibla, atTheNorthPole_alongTheKaabasMeridian)
{
    // Looking along one's own meridian, the Kaaba's lies to the side by the difference of the longitudes.
    EXPECT_NEAR(QiblaDir({9000, 0}), 180.0 - 39.8262, 0.0501);
    EXPECT_NEAR(QiblaDir({9000, 3983}), 180.0, 0.0501);
}

TEST(Qibla, atTheSouthPole_alongTheKaabasMeridian)
{
    EXPECT_NEAR(QiblaDir({-9000, 0}), 39.8262, 0.0501);
    EXPECT_NEAR(QiblaDir({-9000, -14017}), 180.0, 0.0501);
}

TEST(Qibla, latitudeBeyondThePole_thePole)
{
    EXPECT_EQ(QiblaDir({12000, 0}), QiblaDir({9000, 0}));
    EXPECT_EQ(QiblaDir({-32768, 0}), QiblaDir({-9000, 0}));
}

TEST(Qibla, longitudeBeyondHalfATurn_goesRound)
{
    EXPECT_EQ(QiblaDir({1000, 19000}), QiblaDir({1000, -17000}));
}

TEST(Qibla, bearingJustBelowNorth_roundsToNorthAndNotToAWholeTurn)
{
    // From due south of the Kaaba and a little east of its meridian.
    const Place place{-5000, 3985};
    ASSERT_GT(QiblaBearing(place), 359.95);
    EXPECT_EQ(QiblaDir(place), 0.0);
}

} // namespace
