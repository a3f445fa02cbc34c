// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace calculation {

struct HijriDate
{
    std::int32_t day = 1;   // 1 to 30
    std::int32_t month = 1; // 1 to 12
    std::int32_t year = 1;  // before the Hijra 0 and below
};

// daysSince2000: whole days from 1 January 2000. The Umm al-Qura calendar by ICU's tables, 1300 to 1600 AH;
// outside them the civil (tabular) calendar.
[[nodiscard]] HijriDate HijriDateOf(std::int32_t daysSince2000);

// The tabular calendar with the epoch of 16 July 622 (Julian) and the leap years 2, 5, 7, 10, 13, 16, 18, 21,
// 24, 26 and 29 of its cycle of 30, the one that ICU calls islamic-civil (Reingold and Dershowitz,
// "Calendrical Calculations", chapter on the Islamic calendar).
[[nodiscard]] HijriDate CivilHijriDateOf(std::int32_t daysSince2000);

} // namespace calculation
