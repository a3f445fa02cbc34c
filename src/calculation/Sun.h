// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace calculation {

// Towards a body, true equator and equinox of date: x to the equinox, z to the north pole.
struct Direction
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// The apparent geocentric sun at an instant ([1]) and one day before ([0]) and after ([2]) it.
struct SunAround
{
    std::array<Direction, 3> directions;             // of length 1
    std::array<double, 3> equationOfEquinoxes = {};  // radians
    double distance = 1.0;                           // astronomical units, at the instant
    [[nodiscard]] double HorizontalParallax() const; // radians
};

// daysSince2000: days of TT from 2000 January 1, 12h. Within 0.75" over 1900 to 2100.
[[nodiscard]] SunAround ApparentSunAround(double daysSince2000);

} // namespace calculation
