// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace calculation {

// Whole days from 1 January 2000 to a date of the proleptic Gregorian calendar (year 0 is the year before 1).
// All numbers are valid: a month outside 1 to 12 continues into the neighbouring years, a day outside the
// month into the neighbouring months. 31 February is 3 March (2 March in a leap year), day 0 is the last day
// of the month before. Source: Urban and Seidelmann, eds., "Explanatory Supplement to the Astronomical
// Almanac", 3rd ed., 2013, chapter on calendars.
[[nodiscard]] std::int32_t DaysSince2000(std::int16_t day, std::int16_t month, std::int16_t year);

// The day, moved by whole calendar cycles of 400 years into the years -2000 to 5999; a day within them is
// returned unchanged. The series for sun and moon are useless many thousand years from now.
[[nodiscard]] std::int32_t WithinTheories(std::int32_t daysSince2000);

struct HijriDate
{
    std::int32_t day = 1;   // 1 to 30
    std::int32_t month = 1; // 1 to 12
    std::int32_t year = 1;  // 0 or negative before the Hijra
};

// daysSince2000: whole days from 1 January 2000. The Umm al-Qura calendar of ICU's tables, 1300 to 1600 AH;
// outside them the civil (tabular) calendar with the epoch 16 July 622 (Julian) and the leap years 2, 5, 7,
// 10, 13, 16, 18, 21, 24, 26 and 29 of each 30 years (Reingold and Dershowitz, "Calendrical Calculations",
// chapter on the Islamic calendar).
[[nodiscard]] HijriDate HijriDateOf(std::int32_t daysSince2000);

} // namespace calculation
