// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <unicode/ucal.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kFirstYear = 1300;
constexpr int kLastYear = 1600;
constexpr int kMonths = 12;

// The first day of a month, counted from 1 January 2000.
int FirstDay(UCalendar* calendar, int year, int month, UErrorCode& status)
{
    constexpr double kMillisecondsPerDay = 86400000.0;
    constexpr int kDaysFrom1970To2000 = 10957;
    ucal_clear(calendar);
    ucal_set(calendar, UCAL_EXTENDED_YEAR, year);
    ucal_set(calendar, UCAL_MONTH, month);
    ucal_set(calendar, UCAL_DATE, 1);
    const double days = std::floor(ucal_getMillis(calendar, &status) / kMillisecondsPerDay);
    return static_cast<int>(days) - kDaysFrom1970To2000;
}

unsigned MonthsOf30Days(UCalendar* calendar, int year, UErrorCode& status)
{
    unsigned bits = 0;
    for (int month = 0; month < kMonths; ++month) {
        static_cast<void>(FirstDay(calendar, year, month, status));
        const int length = ucal_getLimit(calendar, UCAL_DATE, UCAL_ACTUAL_MAXIMUM, &status);
        bits |= length == 30 ? 1U << static_cast<unsigned>(month) : 0U;
    }
    return bits;
}

} // namespace

// Prints src/calculation/HijriYears.h from ICU's tables.
int main()
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUCalendarPointer calendar(
        ucal_open(u"UTC", -1, "en@calendar=islamic-umalqura", UCAL_DEFAULT, &status));
    std::printf(
        "// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors\n"
        "// SPDX-FileCopyrightText: 2003-2022 Unicode, Inc.\n"
        "// SPDX-License-Identifier: GPL-3.0-or-later AND Unicode-DFS-2016\n"
        "#pragma once\n\n"
        "#include <array>\n"
        "#include <cstdint>\n\n"
        "// Printed by tests/calculation/hijri_years.cpp from the tables of ICU %s.\n"
        "namespace calculation {\n\n"
        "inline constexpr std::int32_t kFirstTabledYear = %d;\n"
        "// 1 Muharram of that year, in days from 1 January 2000.\n"
        "inline constexpr std::int32_t kFirstTabledDay = %d;\n"
        "// The years of the Umm al-Qura calendar from that one on: bit n is set if month n + 1 has 30 "
        "days; the others\n"
        "// have 29.\n"
        "inline constexpr std::array<std::uint16_t, %d> kMonthsOf30Days{{",
        U_ICU_VERSION, kFirstYear, FirstDay(calendar.getAlias(), kFirstYear, 0, status),
        kLastYear - kFirstYear + 1);
    constexpr int kYearsPerLine = 15;
    for (int year = kFirstYear; year <= kLastYear; ++year) {
        std::printf("%s0x%03x,", (year - kFirstYear) % kYearsPerLine == 0 ? "\n    " : " ",
                    MonthsOf30Days(calendar.getAlias(), year, status));
    }
    std::puts("\n}};\n\n} // namespace calculation");
    return U_SUCCESS(status) ? EXIT_SUCCESS : EXIT_FAILURE;
}
