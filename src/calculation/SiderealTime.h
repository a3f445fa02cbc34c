// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace calculation {

// What a mean solar day adds to the sidereal time beyond one whole turn, in turns (see below).
inline constexpr double kSiderealGainPerDay = 360.98564736629 / 360.0 - 1.0;

// Greenwich mean sidereal time in turns, whole turns left in; daysSince2000 counts days of UT1 from 2000
// January 1, 12h. Meeus, "Astronomical Algorithms", 2nd ed., formula 12.4 (IAU 1982). Add the nutation in
// longitude times the cosine of the obliquity for the apparent sidereal time.
[[nodiscard]] double GreenwichMeanSiderealTime(double daysSince2000);

} // namespace calculation
