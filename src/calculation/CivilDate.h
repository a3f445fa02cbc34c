// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace calculation {

// Whole days from 1 January 2000 to a date of the proleptic Gregorian calendar (year 0 is the year before 1).
// Any three numbers name a day: a month outside 1 to 12 counts on into the years around, a day outside the
// month into the months around, so that 31 February is 3 March (2 March in a leap year) and day 0 the eve of
// the first.
[[nodiscard]] std::int32_t DaysSince2000(std::int16_t day, std::int16_t month, std::int16_t year);

// The day with the same date within the years -2000 to 5999, whole calendar cycles of 400 years away; a day
// within them is itself. The theories of sun and moon are series that lose all sense many thousand years from
// now.
[[nodiscard]] std::int32_t WithinTheories(std::int32_t daysSince2000);

} // namespace calculation
