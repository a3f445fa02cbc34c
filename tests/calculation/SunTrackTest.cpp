// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/SunTrack.h"

#include "calculation/Reference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using calculation::Latitude;
using calculation::SunTrack;

// The largest difference in arcseconds, over two centuries, between the altitude interpolated this many days
// from noon and that of the theory at that instant.
TEST(SunTrack, awayFromNoon_asTheTheory)
{
    struct Row
    {
        double days;
        double limit;
    };
    // The date, its neighbours, and the nights around them.
    for (const Row& row : {Row{0.5, 0.05}, Row{1.5, 0.3}, Row{2.5, 2.0}}) {
        std::mt19937 generator(11);
        std::uniform_int_distribution<int> noons(-36525, 36525);
        std::uniform_real_distribution<double> times(-row.days, row.days);
        std::uniform_real_distribution<double> latitudes(-90.0, 90.0);
        ErrorStatistics errors;
        for (int i = 0; i < 20000; ++i) {
            const double noon = noons(generator);
            const double time = times(generator);
            const Latitude latitude = Latitude::FromDegrees(latitudes(generator));
            const double interpolated = SunTrack(noon, 0.1).Altitude(time, latitude).sine;
            const double direct = SunTrack(noon + time, 0.1).Altitude(0.0, latitude).sine;
            errors.Add((interpolated - direct) * 206264.8, std::to_string(noon));
        }
        errors.Print("interpolation over " + std::to_string(row.days) + " days from noon", "arcseconds");
        EXPECT_LT(errors.Largest(), row.limit) << row.days << ' ' << errors.WorstRow();
    }
}

TEST(SunTrack, upperAndLowerTransit_asTheAltitudeThere)
{
    const SunTrack track(9822.0, 0.3);
    const Latitude latitude = Latitude::FromDegrees(52.0);
    for (int index = -2; index <= 2; ++index) {
        const double transit = track.Transit(index);
        EXPECT_NEAR(SunTrack::UpperSine(track.Declination(transit), latitude),
                    track.Altitude(transit, latitude).sine, 3e-6)
            << index;
        EXPECT_NEAR(SunTrack::LowerSine(track.Declination(transit + 0.5), latitude),
                    track.Altitude(transit + 0.5, latitude).sine, 3e-6)
            << index;
    }
}

TEST(SunTrack, rateAndCurvature_asTheDifferences)
{
    const SunTrack track(9822.0, 0.3);
    const Latitude latitude = Latitude::FromDegrees(52.0);
    constexpr double kStep = 1e-4;
    for (double time = -0.5; time < 0.5; time += 0.05) {
        const double before = track.Altitude(time - kStep, latitude).sine;
        const SunTrack::Sample sample = track.Altitude(time, latitude);
        const double after = track.Altitude(time + kStep, latitude).sine;
        EXPECT_NEAR(sample.rate, (after - before) / (2.0 * kStep), 1e-5) << time;
        EXPECT_NEAR(sample.curvature, (after - 2.0 * sample.sine + before) / (kStep * kStep), 0.1) << time;
    }
}

// If there is a transit at each midnight of the date, the hour angle at noon does not show which is nearer,
// since the sun's speed changes over the day. The difference is hundredths of a second, and the transit is
// accurate to a thousandth.
TEST(SunTrack, transitsAtBothEndsOfTheDate_ownIsTheNearerToNoon)
{
    constexpr double kThousandthOfASecond = 1e-3 / 86400.0;
    for (int noon = 9497; noon < 9497 + 366; noon += 3) { // 2026
        double underTheSun = 0.0;                         // longitude with the transit at that noon
        for (int pass = 0; pass < 3; ++pass) {
            underTheSun += SunTrack(noon, underTheSun).Transit(0);
        }
        for (int step = -200; step <= 200; ++step) {
            const SunTrack track(noon, underTheSun + 0.5 + step * 0.002 / 86400.0);
            const double own = std::abs(track.Transit(0));
            EXPECT_LE(own, std::abs(track.Transit(-1)) + kThousandthOfASecond) << noon << ' ' << step;
            EXPECT_LE(own, std::abs(track.Transit(1)) + kThousandthOfASecond) << noon << ' ' << step;
        }
    }
}

} // namespace
