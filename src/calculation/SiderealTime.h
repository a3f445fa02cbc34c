// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace calculation {

// What a mean solar day adds to the sidereal time beyond one whole turn, in turns: the turn of the earth and
// the precession (see below).
inline constexpr double kSiderealGainPerDay = 0.00273781191135448 + 4612.156534 / 1296000.0 / 36525.0;

// Greenwich mean sidereal time in turns, whole turns left in; daysSince2000 counts days of UT1 from 2000
// January 1, 12h. IAU 2006: Capitaine, Wallace, Chapront, Astronomy and Astrophysics 432, 2005, 355, formula
// 42 to the square of the time. Add the nutation in longitude times the cosine of the obliquity for the
// apparent sidereal time.
[[nodiscard]] double GreenwichMeanSiderealTime(double daysSince2000);

} // namespace calculation
