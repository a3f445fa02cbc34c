// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Sun.h"

namespace calculation {

struct MoonPosition
{
    Direction direction;              // apparent, geocentric, of length 1
    double distance = 0.0;            // earth's equatorial radii
    double equationOfEquinoxes = 0.0; // radians
};

// daysSince2000: days of TT from 2000 January 1, 12h. The tables 47.A and 47.B of Meeus, "Astronomical
// Algorithms", 2nd ed. (after Chapront's ELP-2000/82), complete: about 10" in longitude, 4" in latitude.
[[nodiscard]] MoonPosition ApparentMoon(double daysSince2000);

} // namespace calculation
