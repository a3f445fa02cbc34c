// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/EarthOrientation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace {

using calculation::DeltaT;

double DaysOfYear(double year)
{
    return (year - 2000.0) * 365.2425 - 0.5;
}

struct Known
{
    double year;
    double seconds;
    double tolerance;
};

void PrintTo(const Known& known, std::ostream* out)
{
    *out << known.year;
}

class DeltaTOf : public ::testing::TestWithParam<Known>
{
};

// Observed values: the table of the Astronomical Almanac to 1990, the International Earth Rotation Service
// since.
INSTANTIATE_TEST_SUITE_P(years, DeltaTOf,
                         ::testing::Values(Known{1900, -2.72, 0.4}, Known{1920, 21.16, 0.4},
                                           Known{1940, 24.33, 0.6}, Known{1950, 29.15, 0.4},
                                           Known{1960, 33.15, 0.4}, Known{1970, 40.18, 0.4},
                                           Known{1980, 50.54, 0.4}, Known{1990, 56.86, 0.4},
                                           Known{2000, 63.83, 0.1}, Known{2005, 64.69, 0.1},
                                           Known{2010, 66.07, 0.1}, Known{2015, 67.64, 0.1},
                                           Known{2017, 68.59, 0.1}, Known{2020, 69.36, 0.1},
                                           Known{2023, 69.20, 0.1}, Known{2026, 69.11, 0.1}));

TEST_P(DeltaTOf, knownYear_asObserved)
{
    EXPECT_NEAR(DeltaT(DaysOfYear(GetParam().year)), GetParam().seconds, GetParam().tolerance);
}

TEST(DeltaT, overTheSeams_noJumpBeyondTheFormulas)
{
    // The published polynomials meet within a second or two, before 1600 within some.
    double before = DeltaT(DaysOfYear(1600.0));
    for (double year = 1600.0; year < 2200.0; year += 0.01) {
        const double now = DeltaT(DaysOfYear(year));
        ASSERT_LT(std::abs(now - before), 1.0) << year;
        before = now;
    }
}

TEST(DeltaT, yearsToCome_growsSlowlyFromTheLastObserved)
{
    EXPECT_NEAR(DeltaT(DaysOfYear(2050.0)), 71.0, 1.0);
    EXPECT_NEAR(DeltaT(DaysOfYear(2100.0)), 86.9, 1.0);
}

} // namespace
