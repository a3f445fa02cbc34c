// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Sun.h"

// Sun and moon by other hands: the ERFA library (the IAU's routines: VSOP2000 in epv00, precession and
// nutation of IAU 2006/2000A) and the whole of ELP-2000/82 in libnova. Nothing here comes from the
// calculation itself.
namespace independent {

// Apparent geocentric directions, true equator and equinox of date; daysTt: days of TT from 2000 January 1,
// 12h.
[[nodiscard]] calculation::Direction Sun(double daysTt);

struct MoonPosition
{
    calculation::Direction direction;
    double kilometres;
};
[[nodiscard]] MoonPosition Moon(double daysTt);

// Arcseconds.
[[nodiscard]] double Separation(const calculation::Direction& one, const calculation::Direction& other);

// Topocentric airless altitude of the sun's centre in degrees; daysUt: days of UT1 from 2000 January 1, 12h;
// deltaT in seconds, latitude and longitude in degrees.
[[nodiscard]] double SunAltitude(double daysUt, double deltaT, double latitude, double longitude);
// Greenwich hour angle of the sun in degrees, -180 to 180.
[[nodiscard]] double SunHourAngle(double daysUt, double deltaT, double longitude);

} // namespace independent
