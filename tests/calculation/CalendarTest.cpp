// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"

#include "calculation/Days.h"
#include "calculation/Reference.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

namespace {

using calculation::DaysSince2000;
using calculation::HijriDate;
using calculation::HijriDateOf;
using calculation::WithinTheories;

TEST(DaysSince2000, everyMonthOfManyYears_asTheStandardCalendar)
{
    using namespace std::chrono;
    const sys_days start = year{2000} / January / 1;
    for (Short y = -4000; y <= 8000; ++y) {
        for (Short m = 1; m <= 12; ++m) {
            const sys_days date = year{y} / month{static_cast<unsigned>(m)} / 1;
            ASSERT_EQ(DaysSince2000(1, m, y), (date - start).count()) << y << '-' << m;
        }
    }
}

TEST(DaysSince2000, numbersOutOfRange_continueIntoTheNeighbours)
{
    EXPECT_EQ(DaysSince2000(31, 2, 2025), DaysSince2000(3, 3, 2025));
    EXPECT_EQ(DaysSince2000(31, 2, 2024), DaysSince2000(2, 3, 2024));
    EXPECT_EQ(DaysSince2000(0, 3, 2024), DaysSince2000(29, 2, 2024));
    EXPECT_EQ(DaysSince2000(1, 13, 2024), DaysSince2000(1, 1, 2025));
    EXPECT_EQ(DaysSince2000(1, 0, 2024), DaysSince2000(1, 12, 2023));
    EXPECT_EQ(DaysSince2000(-1, -11, 2024), DaysSince2000(30, 12, 2022));
}

TEST(WithinTheories, everyYear_unchangedOrMovedByWholeCycles)
{
    constexpr std::int32_t kDaysPerCycle = 146097;
    const std::int32_t first = DaysSince2000(1, 1, -2000);
    const std::int32_t last = DaysSince2000(31, 12, 5999);
    for (int year = std::numeric_limits<Short>::min(); year <= std::numeric_limits<Short>::max(); ++year) {
        for (const std::int32_t day : {DaysSince2000(1, 1, static_cast<Short>(year)),
                                       DaysSince2000(31, 12, static_cast<Short>(year))}) {
            const std::int32_t within = WithinTheories(day);
            ASSERT_EQ((day - within) % kDaysPerCycle, 0) << year;
            ASSERT_GE(within, day > last ? last + 1 - kDaysPerCycle : first) << year;
            ASSERT_LE(within, day < first ? first - 1 + kDaysPerCycle : last) << year;
            ASSERT_TRUE(within == day || day < first || day > last) << year;
        }
    }
}

void ExpectDate(const HijriDate& date, int day, int month, int year)
{
    EXPECT_EQ(date.day, day);
    EXPECT_EQ(date.month, month);
    EXPECT_EQ(date.year, year);
}

TEST(HijriDate, everyRowOfTheTable_theSame)
{
    const auto rows = ReferenceTable("hijri.csv");
    for (const ReferenceRow& row : rows) {
        SCOPED_TRACE(row.line);
        ExpectDate(HijriDateOf(DaysSince2000(row.Whole(0), row.Whole(1), row.Whole(2))), row.Whole(3),
                   row.Whole(4), row.Whole(5));
    }
    EXPECT_EQ(rows.size(), 301U);
}

// Known dates of Saudi Arabia's calendar, which differ from the tabular calendar by a day.
TEST(HijriDate, newYears_asTheUmmAlQuraCalendar)
{
    ExpectDate(HijriDateOf(DaysSince2000(19, 7, 2023)), 1, 1, 1445);
    ExpectDate(HijriDateOf(DaysSince2000(7, 7, 2024)), 1, 1, 1446);
    ExpectDate(HijriDateOf(DaysSince2000(26, 6, 2025)), 1, 1, 1447);
}

// The first day of the calendar is 16 July 622 of the Julian calendar, 19 July of the Gregorian.
TEST(HijriDate, outsideTheTables_theCivilCalendar)
{
    ExpectDate(HijriDateOf(DaysSince2000(19, 7, 622)), 1, 1, 1);
    ExpectDate(HijriDateOf(DaysSince2000(18, 7, 622)), 29, 12, 0);
    ExpectDate(HijriDateOf(DaysSince2000(1, 1, 1800)), 4, 8, 1214);
    ExpectDate(HijriDateOf(DaysSince2000(1, 1, 2300)), 8, 12, 1729);
}

// At the borders of the tables the day may repeat or skip by the difference of the two calendars, nowhere
// else.
TEST(HijriDate, everyDayFrom1870To2190_inOrderAndInRange)
{
    HijriDate before = HijriDateOf(DaysSince2000(31, 12, 1869));
    int leaps = 0;
    for (std::int32_t days = DaysSince2000(1, 1, 1870); days <= DaysSince2000(1, 1, 2190); ++days) {
        const HijriDate date = HijriDateOf(days);
        ASSERT_TRUE(date.day >= 1 && date.day <= 30 && date.month >= 1 && date.month <= 12) << days;
        const bool isNextDay =
            date.day == before.day + 1 && date.month == before.month && date.year == before.year;
        const bool isNextMonth = date.day == 1 && before.day >= 29 && date.month == before.month % 12 + 1 &&
                                 date.year == before.year + (before.month == 12 ? 1 : 0);
        leaps += isNextDay || isNextMonth ? 0 : 1;
        before = date;
    }
    EXPECT_LE(leaps, 2);
}

} // namespace
