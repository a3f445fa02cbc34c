// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/EarthOrientation.h"

#include <array>

namespace calculation {

// The apparent geocentric sun at an instant ([1]) and one day before ([0]) and after ([2]) it, for the
// interpolation between them.
struct SunAround
{
    std::array<Direction, 3> directions;             // of length 1
    std::array<double, 3> equationOfEquinoxes = {};  // radians
    double distance = 1.0;                           // astronomical units, at the instant
    [[nodiscard]] double HorizontalParallax() const; // radians
};

// daysSince2000: days of TT from 2000 January 1, 12h. Within 0.75" over 1900 to 2100; the theory (VSOP87, see
// EarthSeries.h) covers 8,000 years. Aberration and mean obliquity of the middle instant are used for all
// three, within 0.01".
[[nodiscard]] SunAround ApparentSunAround(double daysSince2000);

} // namespace calculation
