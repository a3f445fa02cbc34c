// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>

namespace {

using calculation::DaysSince2000;
using calculation::WithinTheories;

constexpr std::int32_t kDaysPerCycle = 146097;

TEST(DaysSince2000, everyMonthOfManyYears_asTheStandardCalendar)
{
    using namespace std::chrono;
    const sys_days start = year{2000} / January / 1;
    for (int y = -4000; y <= 8000; ++y) {
        for (unsigned m = 1; m <= 12; ++m) {
            const sys_days date = year{y} / month{m} / 1;
            ASSERT_EQ(DaysSince2000(1, static_cast<std::int16_t>(m), static_cast<std::int16_t>(y)),
                      (date - start).count())
                << y << '-' << m;
        }
    }
}

TEST(DaysSince2000, numbersThatNameNoDay_countOn)
{
    EXPECT_EQ(DaysSince2000(31, 2, 2025), DaysSince2000(3, 3, 2025));
    EXPECT_EQ(DaysSince2000(31, 2, 2024), DaysSince2000(2, 3, 2024));
    EXPECT_EQ(DaysSince2000(0, 3, 2024), DaysSince2000(29, 2, 2024));
    EXPECT_EQ(DaysSince2000(1, 13, 2024), DaysSince2000(1, 1, 2025));
    EXPECT_EQ(DaysSince2000(1, 0, 2024), DaysSince2000(1, 12, 2023));
    EXPECT_EQ(DaysSince2000(-1, -11, 2024), DaysSince2000(30, 12, 2022));
}

TEST(WithinTheories, daysWithin_themselves)
{
    for (const std::int16_t year :
         {std::int16_t{-2000}, std::int16_t{0}, std::int16_t{2026}, std::int16_t{5999}}) {
        EXPECT_EQ(WithinTheories(DaysSince2000(1, 1, year)), DaysSince2000(1, 1, year));
        EXPECT_EQ(WithinTheories(DaysSince2000(31, 12, year)), DaysSince2000(31, 12, year));
    }
}

TEST(WithinTheories, daysBeyond_wholeCyclesAway)
{
    for (int year = std::numeric_limits<std::int16_t>::min();
         year <= std::numeric_limits<std::int16_t>::max(); ++year) {
        const std::int32_t day = DaysSince2000(29, 2, static_cast<std::int16_t>(year));
        const std::int32_t within = WithinTheories(day);
        ASSERT_EQ((day - within) % kDaysPerCycle, 0) << year;
        ASSERT_GE(within, DaysSince2000(1, 1, -2000)) << year;
        ASSERT_LE(within, DaysSince2000(31, 12, 5999)) << year;
    }
}

TEST(WithinTheories, theBorders_oneCycleBack)
{
    EXPECT_EQ(WithinTheories(DaysSince2000(1, 1, 6000)), DaysSince2000(1, 1, 5600));
    EXPECT_EQ(WithinTheories(DaysSince2000(31, 12, -2001)), DaysSince2000(31, 12, -1601));
}

} // namespace
