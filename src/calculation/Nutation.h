// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace calculation {

// Radians, at three instants one day apart ([1] is the instant asked for).
struct Nutation
{
    double inLongitude[3] = {};
    double inObliquity[3] = {};
};

// Nutation of the IAU 1980 theory, its terms from 0.003" on (Seidelmann, Celestial Mechanics 27, 1982; Meeus,
// "Astronomical Algorithms", 2nd ed., table 22.A); within 0.02" of the whole theory over 1900 to 2100.
// daysSince2000: days of TT from 2000 January 1, 12h.
[[nodiscard]] Nutation NutationAround(double daysSince2000);

// Mean obliquity of the ecliptic in radians, IAU 1976 (Meeus, formula 22.2).
[[nodiscard]] double MeanObliquity(double daysSince2000);

} // namespace calculation
