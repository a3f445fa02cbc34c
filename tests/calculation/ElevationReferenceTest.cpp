// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"
#include "calculation/Calendar.h"
#include "calculation/ErrorStatistics.h"
#include "calculation/Moon.h"
#include "calculation/ReferenceTable.h"

#include <gtest/gtest.h>

namespace {

using calculation::Calculator;
using calculation::Latitude;
using calculation::Place;
using calculation::SunTrack;

struct Errors
{
    ErrorStatistics sun;
    ErrorStatistics moon;
    ErrorStatistics sunInTenths;
    ErrorStatistics moonInTenths;
};

Errors ErrorsOfTheTable()
{
    Errors errors;
    const ReferenceTable table("elevations.csv");
    for (const ReferenceTable::Row& row : table.Rows()) {
        const Place place{row.Whole(0), row.Whole(1)};
        const double sun = row.Number(7);
        const double moon = row.Number(9);

        const double noon =
            calculation::DaysSince2000(row.Whole(3), row.Whole(4), row.Whole(5)) - row.Whole(2) / 1440.0;
        const double time = row.Whole(6) / 1440.0 - 0.5;
        const SunTrack track(noon, place.LongitudeTurns());
        const Latitude latitude = Latitude::FromDegrees(place.LatitudeDegrees());
        errors.sun.Add(track.Elevation(time, latitude) - sun, row.Line());
        errors.moon.Add(MoonElevation(place, noon + time) - moon, row.Line());

        Calculator calculator;
        calculator.SetHorParams(place, row.Whole(2), row.Whole(3), row.Whole(4), row.Whole(5));
        errors.sunInTenths.Add(calculator.SunElev(row.Whole(6)) / 10.0 - sun, row.Line());
        errors.moonInTenths.Add(calculator.MoonElevation(row.Whole(6)) / 10.0 - moon, row.Line());
    }
    return errors;
}

TEST(Elevation, everyRowOfTheTable_withinItsLimit)
{
    const Errors errors = ErrorsOfTheTable();
    errors.sun.Print("sun's elevation", "degrees");
    errors.moon.Print("moon's elevation", "degrees");
    EXPECT_EQ(errors.sun.Count(), 500);
    EXPECT_LT(errors.sun.Largest(), 0.0007) << errors.sun.WorstRow();
    EXPECT_LT(errors.moon.Largest(), 0.0025) << errors.moon.WorstRow();
}

TEST(Elevation, everyRowOfTheTable_tenthsAreTheNearest)
{
    const Errors errors = ErrorsOfTheTable();
    errors.sunInTenths.Print("SunElev", "degrees");
    errors.moonInTenths.Print("MoonElevation", "degrees");
    EXPECT_LT(errors.sunInTenths.Largest(), 0.051) << errors.sunInTenths.WorstRow();
    EXPECT_LT(errors.moonInTenths.Largest(), 0.052) << errors.moonInTenths.WorstRow();
}

} // namespace
