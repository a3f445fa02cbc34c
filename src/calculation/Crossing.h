// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/SunTrack.h"

namespace calculation {

// When the sun's altitude passes a value between two instants on whose sides it stands; days as in SunTrack.
struct Crossing
{
    double below = 0.0; // an instant when the sun is lower
    double above = 0.0; // an instant when it is higher; before or after the other
    double sine = 0.0;  // of the altitude, geocentric
    double guess = 0.0; // where to start
};

// Within 0.01 s of the crossing of the track; ends after a bounded number of steps whatever it is given.
[[nodiscard]] double TimeOf(const Crossing& crossing, const SunTrack& track, const Latitude& latitude);

} // namespace calculation
