// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace calculation {

// In radians.
struct Nutation
{
    double inLongitude = 0.0;
    double inObliquity = 0.0;
};

// Nutation of the IAU 1980 theory, its terms above 0.003" and one of 0.0029" (Seidelmann, Celestial Mechanics
// 27, 1982; Meeus, "Astronomical Algorithms", 2nd ed., table 22.A); within 0.03" of the whole theory over
// 1900 to 2100. daysSince2000: days of TT from 2000 January 1, 12h.
[[nodiscard]] Nutation NutationAt(double daysSince2000);

// Mean obliquity of the ecliptic in radians, IAU 2006 (Hilton et al., Celestial Mechanics and Dynamical
// Astronomy 94, 2006, 351).
[[nodiscard]] double MeanObliquity(double daysSince2000);

// What a longitude counted from the mean equinox of date in VSOP87 or ELP-2000/82 lacks, in radians: both
// carry the precession of IAU 1976, the sidereal time that of IAU 2006 (Capitaine, Wallace, Chapront,
// Astronomy and Astrophysics 412, 2003, 567), slower by 0.3" a century. The equinoxes agree at 2000 within
// 0.05", so that nothing is left of the correction to the FK5 that Meeus applies.
[[nodiscard]] double PrecessionCorrection(double daysSince2000);

} // namespace calculation
