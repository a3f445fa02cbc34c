// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"

#include <unicode/ucal.h>

#include <algorithm>
#include <optional>

namespace calculation {

namespace {

// The whole number at or below the quotient, for a divisor above 0; C++ rounds towards 0.
constexpr std::int32_t FloorDivide(std::int32_t dividend, std::int32_t divisor)
{
    const std::int32_t quotient = dividend / divisor;
    return quotient * divisor > dividend ? quotient - 1 : quotient;
}

constexpr std::int32_t kDaysPerGregorianCycle = 146097; // 400 years

constexpr std::int32_t kDaysPerHijriCycle = 10631;
constexpr std::int32_t kYearsPerHijriCycle = 30;
// The first day of the Hijri calendar, 1 Muharram 1, in days from 1 January 2000.
constexpr std::int32_t kHijriEpoch = -503105;

// ICU's tables of the Umm al-Qura calendar.
constexpr std::int32_t kFirstTabledYear = 1300;
constexpr std::int32_t kLastTabledYear = 1600;

// Opened for each date and not kept: a date is asked for once a day, and nothing then has to be closed when
// the module is unloaded.
class UmmAlQuraCalendar final
{
public:
    UmmAlQuraCalendar()
        : m_calendar(ucal_open(u"UTC", -1, "en@calendar=islamic-umalqura", UCAL_DEFAULT, &m_status))
    {
    }
    ~UmmAlQuraCalendar() { ucal_close(m_calendar); }
    UmmAlQuraCalendar(const UmmAlQuraCalendar&) = delete;
    UmmAlQuraCalendar& operator=(const UmmAlQuraCalendar&) = delete;

    std::optional<HijriDate> DateOf(std::int32_t daysSince2000)
    {
        constexpr double kMillisecondsPerDay = 86400000.0;
        constexpr double kDaysFrom1970To2000 = 10957.0;
        // The noon of the day, far from any rounding at its borders.
        ucal_setMillis(m_calendar, (daysSince2000 + kDaysFrom1970To2000 + 0.5) * kMillisecondsPerDay,
                       &m_status);
        const HijriDate date{ucal_get(m_calendar, UCAL_DATE, &m_status),
                             ucal_get(m_calendar, UCAL_MONTH, &m_status) + 1,
                             ucal_get(m_calendar, UCAL_YEAR, &m_status)};
        return U_SUCCESS(m_status) ? std::optional(date) : std::nullopt;
    }

private:
    UErrorCode m_status = U_ZERO_ERROR;
    UCalendar* m_calendar = nullptr;
};

// Days of a cycle before its year of the given number, 0 to 29.
std::int32_t DaysBeforeYear(std::int32_t yearOfCycle)
{
    return 354 * yearOfCycle + (14 + 11 * yearOfCycle) / 30;
}

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

HijriDate CivilHijriDateOf(std::int32_t daysSince2000)
{
    const std::int32_t days = daysSince2000 - kHijriEpoch;
    const std::int32_t cycle = FloorDivide(days, kDaysPerHijriCycle);
    const std::int32_t dayOfCycle = days - cycle * kDaysPerHijriCycle;
    std::int32_t yearOfCycle = std::min(dayOfCycle / 354, kYearsPerHijriCycle - 1);
    if (DaysBeforeYear(yearOfCycle) > dayOfCycle) {
        --yearOfCycle;
    }
    const std::int32_t dayOfYear = dayOfCycle - DaysBeforeYear(yearOfCycle);
    // Months of 30 and 29 days in turn; the leap day ends the year.
    const std::int32_t month = std::min((2 * dayOfYear) / 59, 11);
    const std::int32_t day = dayOfYear - (59 * month + 1) / 2;
    return {day + 1, month + 1, cycle * kYearsPerHijriCycle + yearOfCycle + 1};
}

HijriDate HijriDateOf(std::int32_t daysSince2000)
{
    const HijriDate civil = CivilHijriDateOf(daysSince2000);
    // The two calendars differ by a day or two, so that the tables' borders are asked of ICU itself.
    if (civil.year < kFirstTabledYear - 1 || civil.year > kLastTabledYear + 1) {
        return civil;
    }
    const std::optional<HijriDate> date = UmmAlQuraCalendar().DateOf(daysSince2000);
    const bool isTabled = date && date->year >= kFirstTabledYear && date->year <= kLastTabledYear;
    return isTabled ? *date : civil;
}

} // namespace calculation
