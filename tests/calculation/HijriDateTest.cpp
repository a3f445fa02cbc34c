// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"
#include "calculation/ReferenceTable.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using calculation::DaysSince2000;
using calculation::HijriDate;
using calculation::HijriDateOf;

void ExpectDate(const HijriDate& date, int day, int month, int year)
{
    EXPECT_EQ(date.day, day);
    EXPECT_EQ(date.month, month);
    EXPECT_EQ(date.year, year);
}

TEST(HijriDate, everyRowOfTheTable_theSame)
{
    int count = 0;
    const ReferenceTable table("hijri.csv");
    for (const ReferenceTable::Row& row : table.Rows()) {
        SCOPED_TRACE(row.Line());
        ++count;
        ExpectDate(HijriDateOf(DaysSince2000(row.Whole(0), row.Whole(1), row.Whole(2))), row.Whole(3),
                   row.Whole(4), row.Whole(5));
    }
    EXPECT_EQ(count, 301);
}

// Dates that Saudi Arabia's calendar is known to have had, the tabular one a day beside them.
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

// Over the borders of the tables the day may repeat or leap by the difference of the two calendars, and
// nothing else.
TEST(HijriDate, everyDayFrom1870To2190_inOrderAndInRange)
{
    HijriDate before = HijriDateOf(DaysSince2000(31, 12, 1869));
    int leaps = 0;
    for (std::int32_t days = DaysSince2000(1, 1, 1870); days <= DaysSince2000(1, 1, 2190); ++days) {
        const HijriDate date = HijriDateOf(days);
        ASSERT_GE(date.day, 1) << days;
        ASSERT_LE(date.day, 30) << days;
        ASSERT_GE(date.month, 1) << days;
        ASSERT_LE(date.month, 12) << days;
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
