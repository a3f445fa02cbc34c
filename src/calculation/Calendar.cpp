// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"

#include "calculation/HijriYears.h"

#include <algorithm>
#include <bit>

namespace calculation {

namespace {

// The quotient rounded down, for a positive divisor; C++ rounds towards 0.
constexpr std::int32_t FloorDivide(std::int32_t dividend, std::int32_t divisor)
{
    const std::int32_t quotient = dividend / divisor;
    return quotient * divisor > dividend ? quotient - 1 : quotient;
}

constexpr std::int32_t kDaysPerGregorianCycle = 146097; // 400 years

constexpr std::int32_t kMonths = 12;
constexpr std::int32_t kShortMonth = 29;

// The months have 30 and 29 days in turn, except for the last of a leap year.
HijriDate CivilDate(std::int32_t daysSince2000)
{
    constexpr std::int32_t kFirstDay = -503105; // 19 July 622
    constexpr std::int32_t kYears = 30;
    constexpr std::int32_t kDaysInThem = 10631;
    const std::int32_t days = daysSince2000 - kFirstDay;
    const std::int32_t year = FloorDivide(kYears * days + 10646, kDaysInThem);
    const std::int32_t dayOfYear = days - (year - 1) * 354 - FloorDivide(3 + 11 * year, kYears);
    const std::int32_t month = std::min(2 * dayOfYear / 59, kMonths - 1);
    return {dayOfYear - (59 * month + 1) / 2 + 1, month + 1, year};
}

// dayOfYear: from 0; longMonths: as in the table
HijriDate DateInYear(std::int32_t dayOfYear, unsigned longMonths, std::int32_t year)
{
    std::int32_t day = dayOfYear;
    for (unsigned month = 0;; ++month) {
        const auto length = kShortMonth + static_cast<std::int32_t>(longMonths >> month & 1U);
        if (day < length) {
            return {day + 1, static_cast<std::int32_t>(month) + 1, year};
        }
        day -= length;
    }
}

} // namespace

std::int32_t DaysSince2000(std::int16_t day, std::int16_t month, std::int16_t year)
{
    // Years start on 1 March here, so that the leap day is the last day of a year and needs no special case.
    const std::int32_t monthsFromMarch = year * 12 + month - 3;
    const std::int32_t marchYear = FloorDivide(monthsFromMarch, 12);
    const std::int32_t marchMonth = monthsFromMarch - marchYear * 12;
    const std::int32_t leapDays =
        FloorDivide(marchYear, 4) - FloorDivide(marchYear, 100) + FloorDivide(marchYear, 400);
    const std::int32_t daysBeforeMonth = (153 * marchMonth + 2) / 5;
    constexpr std::int32_t kFrom1March0To1January2000 = 730425;
    return marchYear * 365 + leapDays + daysBeforeMonth + day - 1 - kFrom1March0To1January2000;
}

std::int32_t WithinTheories(std::int32_t daysSince2000)
{
    constexpr std::int32_t kFirst = -10 * kDaysPerGregorianCycle;
    constexpr std::int32_t kEnd = 10 * kDaysPerGregorianCycle;
    std::int32_t cyclesAway = 0;
    if (daysSince2000 < kFirst) {
        cyclesAway = FloorDivide(daysSince2000 - kFirst, kDaysPerGregorianCycle);
    } else if (daysSince2000 >= kEnd) {
        cyclesAway = FloorDivide(daysSince2000 - kEnd, kDaysPerGregorianCycle) + 1;
    }
    return daysSince2000 - cyclesAway * kDaysPerGregorianCycle;
}

HijriDate HijriDateOf(std::int32_t daysSince2000)
{
    std::int32_t day = daysSince2000 - kFirstTabledDay;
    if (day < 0) {
        return CivilDate(daysSince2000);
    }
    std::int32_t year = kFirstTabledYear;
    for (const std::uint16_t longMonths : kMonthsOf30Days) {
        const std::int32_t length = kMonths * kShortMonth + std::popcount(longMonths);
        if (day < length) {
            return DateInYear(day, longMonths, year);
        }
        day -= length;
        ++year;
    }
    return CivilDate(daysSince2000);
}

} // namespace calculation
