// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Place.h"
#include "calculation/SunTrack.h"

namespace calculation {

// Topocentric altitudes of the centre at sea level in degrees, without refraction, -90 to 90.

// time: days from the track's noon, within the track's reach. The altitude is of Meeus, "Astronomical
// Algorithms", 2nd ed., formula 13.6, less the parallax (see SunTrack).
[[nodiscard]] double SunElevation(const SunTrack& track, const Latitude& latitude, double time);

// daysSince2000: days of UT from 2000 January 1, 12h. The parallax, up to a degree, is that of the place on
// the ellipsoid of the earth (Meeus, "Astronomical Algorithms", 2nd ed., chapter 11).
[[nodiscard]] double MoonElevation(const Place& place, double daysSince2000);

} // namespace calculation
