// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/HijriDate.h"

#include "calculation/FloorDivide.h"

#include <unicode/ucal.h>

#include <algorithm>
#include <optional>

namespace calculation {

namespace {

constexpr std::int32_t kDaysPerHijriCycle = 10631;
constexpr std::int32_t kYearsPerCycle = 30;
// 1 Muharram 1 to 1 January 2000.
constexpr std::int32_t kEpoch = -503105;

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

HijriDate CivilHijriDateOf(std::int32_t daysSince2000)
{
    const std::int32_t days = daysSince2000 - kEpoch;
    const std::int32_t cycle = FloorDivide(days, kDaysPerHijriCycle);
    const std::int32_t dayOfCycle = days - cycle * kDaysPerHijriCycle;
    std::int32_t yearOfCycle = std::min(dayOfCycle / 354, kYearsPerCycle - 1);
    if (DaysBeforeYear(yearOfCycle) > dayOfCycle) {
        --yearOfCycle;
    }
    const std::int32_t dayOfYear = dayOfCycle - DaysBeforeYear(yearOfCycle);
    // Months of 30 and 29 days in turn; the leap day ends the year.
    const std::int32_t month = std::min((2 * dayOfYear) / 59, 11);
    const std::int32_t day = dayOfYear - (59 * month + 1) / 2;
    return {day + 1, month + 1, cycle * kYearsPerCycle + yearOfCycle + 1};
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
