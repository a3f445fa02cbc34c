// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Place.h"
#include "calculation/Sun.h"

namespace calculation {

struct MoonPosition
{
    Direction direction;              // apparent, geocentric, of length 1
    double distance = 0.0;            // earth's equatorial radii
    double equationOfEquinoxes = 0.0; // radians
};

// daysSince2000: days of TT from 2000 January 1, 12h. The complete tables 47.A and 47.B of Meeus,
// "Astronomical Algorithms", 2nd ed. (after ELP-2000/82), and some further terms of that theory: within 10"
// of the theory over 1900 to 2100, usually within 2"; the distance within 15 km.
[[nodiscard]] MoonPosition ApparentMoon(double daysSince2000);

// Topocentric altitude of the moon's centre at sea level in degrees, without refraction, -90 to 90.
// daysSince2000: days of UT from 2000 January 1, 12h. The parallax (up to a degree) is that of the place on
// the ellipsoid of the earth.
[[nodiscard]] double MoonElevation(const Place& place, double daysSince2000);

} // namespace calculation
