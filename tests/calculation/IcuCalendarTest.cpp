// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"

#include <gtest/gtest.h>
#include <unicode/ucal.h>

#include <limits>
#include <tuple>

namespace {

using calculation::DaysSince2000;
using calculation::HijriDateOf;

using Date = std::tuple<std::int32_t, std::int32_t, std::int32_t>;

// A calendar of ICU.
class IcuCalendar final
{
public:
    explicit IcuCalendar(const char* name)
        : m_calendar(ucal_open(u"UTC", -1, name, UCAL_DEFAULT, &m_status))
    {
    }

    // Day, month and year.
    [[nodiscard]] Date DateOf(std::int32_t daysSince2000)
    {
        constexpr double kMillisecondsPerDay = 86400000.0;
        constexpr double kDaysFrom1970To2000 = 10957.0;
        // Noon, so that rounding cannot change the day.
        const double noon = (daysSince2000 + kDaysFrom1970To2000 + 0.5) * kMillisecondsPerDay;
        ucal_setMillis(m_calendar.getAlias(), noon, &m_status);
        const Date date{Field(UCAL_DATE), Field(UCAL_MONTH) + 1, Field(UCAL_EXTENDED_YEAR)};
        EXPECT_TRUE(U_SUCCESS(m_status)) << u_errorName(m_status);
        return date;
    }

private:
    [[nodiscard]] std::int32_t Field(UCalendarDateFields name)
    {
        return ucal_get(m_calendar.getAlias(), name, &m_status);
    }

    UErrorCode m_status = U_ZERO_ERROR;
    icu::LocalUCalendarPointer m_calendar;
};

Date Own(std::int32_t daysSince2000)
{
    const calculation::HijriDate date = HijriDateOf(daysSince2000);
    return {date.day, date.month, date.year};
}

const std::int32_t kTenYearsBefore = DaysSince2000(1, 1, 1872);
const std::int32_t kTenYearsAfter = DaysSince2000(31, 12, 2184);

TEST(IcuCalendar, everyDayOfTheTables_andTenYearsBeside_theSame)
{
    IcuCalendar ummAlQura("en@calendar=islamic-umalqura");
    IcuCalendar civil("en@calendar=islamic-civil");
    for (std::int32_t days = kTenYearsBefore; days <= kTenYearsAfter; ++days) {
        const Date tabled = ummAlQura.DateOf(days);
        const bool isTabled = std::get<2>(tabled) >= 1300 && std::get<2>(tabled) <= 1600;
        ASSERT_EQ(Own(days), isTabled ? tabled : civil.DateOf(days)) << days;
    }
}

// The module takes dates of all 16-bit numbers.
TEST(IcuCalendar, allOtherDates_asTheCivilCalendar)
{
    constexpr std::int16_t lowest = std::numeric_limits<std::int16_t>::min();
    constexpr std::int16_t highest = std::numeric_limits<std::int16_t>::max();
    const std::int32_t last = DaysSince2000(highest, highest, highest);
    IcuCalendar civil("en@calendar=islamic-civil");
    for (std::int32_t days = DaysSince2000(lowest, lowest, lowest); days <= last;
         days += DUSKBEACON_HIJRI_STRIDE) {
        if (days < kTenYearsBefore || days > kTenYearsAfter) {
            ASSERT_EQ(Own(days), civil.DateOf(days)) << days;
        }
    }
}

} // namespace
