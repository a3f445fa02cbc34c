// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"

#include <unicode/ucal.h>

namespace calculation {

namespace {

// The quotient rounded down, for a positive divisor; C++ rounds towards 0.
constexpr std::int32_t FloorDivide(std::int32_t dividend, std::int32_t divisor)
{
    const std::int32_t quotient = dividend / divisor;
    return quotient * divisor > dividend ? quotient - 1 : quotient;
}

constexpr std::int32_t kDaysPerGregorianCycle = 146097; // 400 years

// The years of ICU's tables of the Umm al-Qura calendar.
constexpr std::int32_t kFirstTabledYear = 1300;
constexpr std::int32_t kLastTabledYear = 1600;

// The date in one of ICU's calendars. The calendar is opened for each date, once a day: one that is kept
// would have to be closed when the module is unloaded.
HijriDate DateIn(const char* calendarName, std::int32_t daysSince2000)
{
    constexpr double kMillisecondsPerDay = 86400000.0;
    constexpr double kDaysFrom1970To2000 = 10957.0;
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUCalendarPointer calendar(ucal_open(u"UTC", -1, calendarName, UCAL_DEFAULT, &status));
    // Noon, so that rounding cannot change the day.
    ucal_setMillis(calendar.getAlias(), (daysSince2000 + kDaysFrom1970To2000 + 0.5) * kMillisecondsPerDay,
                   &status);
    const auto field = [&](UCalendarDateFields name) { return ucal_get(calendar.getAlias(), name, &status); };
    const HijriDate date{field(UCAL_DATE), field(UCAL_MONTH) + 1, field(UCAL_EXTENDED_YEAR)};
    return U_SUCCESS(status) ? date : HijriDate{0, 0, 0};
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
    const HijriDate date = DateIn("en@calendar=islamic-umalqura", daysSince2000);
    const bool isTabled = date.year >= kFirstTabledYear && date.year <= kLastTabledYear;
    return isTabled ? date : DateIn("en@calendar=islamic-civil", daysSince2000);
}

} // namespace calculation
