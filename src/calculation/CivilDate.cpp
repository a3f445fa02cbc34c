// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/CivilDate.h"

#include "calculation/FloorDivide.h"

namespace calculation {

namespace {

constexpr std::int32_t kDaysPerCycle = 146097;

} // namespace

std::int32_t DaysSince2000(std::int16_t day, std::int16_t month, std::int16_t year)
{
    // Counted from 1 March of the year 0, so that the leap day ends the year and needs no case of its own.
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
    constexpr std::int32_t kFirst = -10 * kDaysPerCycle;
    constexpr std::int32_t kEnd = 10 * kDaysPerCycle;
    if (daysSince2000 < kFirst) {
        return daysSince2000 +
               kDaysPerCycle * FloorDivide(kFirst - daysSince2000 + kDaysPerCycle - 1, kDaysPerCycle);
    }
    if (daysSince2000 >= kEnd) {
        return daysSince2000 - kDaysPerCycle * (FloorDivide(daysSince2000 - kEnd, kDaysPerCycle) + 1);
    }
    return daysSince2000;
}

} // namespace calculation
