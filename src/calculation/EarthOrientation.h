// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"

// Delta T, sidereal time, precession, obliquity and nutation. Days count from 2000 January 1, 12h.
namespace calculation {

// TT - UT1 in seconds, for any date; daysSince2000 counts days of UT from 2000 January 1, 12h.
// Until 2005 the polynomials of Espenak and Meeus, "Five Millennium Canon of Solar Eclipses"
// (NASA/TP-2006-214141, 2006); until 2026 the yearly observed values of the
// International Earth Rotation Service with linear interpolation, within 0.1 s of its daily values. After
// 2026 the value of 2026 plus the long-term slowing of the earth's rotation, 32.5 seconds per century squared
// (Stephenson, Morrison, Hohenkerk, "Measurement of the Earth's rotation: 720 BC to AD 2015", Proc. R. Soc. A
// 472, 2016; their addendum of 2021 has 31.4, which is 0.6 s less in 2100); in a century the error may be
// tens of seconds.
[[nodiscard]] double DeltaT(double daysSince2000);

// Turns beyond one whole turn by which the sidereal time advances in a mean solar day: rotation of the earth
// and precession (see below).
inline constexpr double kSiderealGainPerDay = 0.00273781191135448 + 4612.156534 / 1296000.0 / 36525.0;

// Greenwich mean sidereal time in turns, not reduced to one turn; daysSince2000 counts days of UT1 from 2000
// January 1, 12h. IAU 2006: Capitaine, Wallace, Chapront, Astronomy and Astrophysics 432, 2005, 355, up to
// the square of the time. Add the nutation in longitude times the cosine of the obliquity for the apparent
// sidereal time.
[[nodiscard]] double GreenwichMeanSiderealTime(double daysSince2000);

// In radians.
struct Nutation
{
    double inLongitude = 0.0;
    double inObliquity = 0.0;
};

// Nutation of the IAU 1980 theory, terms above 0.003" and one of 0.0029" (Seidelmann, Celestial Mechanics 27,
// 1982; Meeus, "Astronomical Algorithms", 2nd ed., table 22.A); within 0.03" of the whole theory over 1900 to
// 2100. daysSince2000: days of TT from 2000 January 1, 12h.
[[nodiscard]] Nutation NutationAt(double daysSince2000);

// Mean obliquity of the ecliptic in radians, IAU 2006 (Hilton et al., Celestial Mechanics and Dynamical
// Astronomy 94, 2006, 351), up to the cube of the time. daysSince2000: days of TT.
[[nodiscard]] double MeanObliquity(double daysSince2000);

// Direction of a body, true equator and equinox of date: x to the equinox, z to the north pole.
struct Direction
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// Unit vector from ecliptic longitude and latitude, true equinox of date, and true obliquity (Meeus,
// "Astronomical Algorithms", 2nd ed., chapter 13).
[[nodiscard]] Direction EquatorialDirection(const SineCosine& longitude, const SineCosine& latitude,
                                            const SineCosine& obliquity);

// Radians to add to a longitude of VSOP87 or ELP-2000/82 from the mean equinox of date: both use the
// precession of IAU 1976, the sidereal time uses that of IAU 2006 (Capitaine, Wallace, Chapront, Astronomy
// and Astrophysics 412, 2003, 567), which is slower by 0.3" a century. The correction to the FK5 in Meeus is
// left out, since the equinoxes agree within 0.05" at 2000. daysSince2000: days of TT.
[[nodiscard]] double PrecessionCorrection(double daysSince2000);

} // namespace calculation
