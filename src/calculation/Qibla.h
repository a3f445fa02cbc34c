// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Place.h"

namespace calculation {

// Initial bearing of the great circle to the Kaaba (21.4225 N, 39.8262 E) on the sphere (Snyder, "Map
// Projections: A Working Manual", USGS Professional Paper 1395, 1987, formula 5-4b), degrees clockwise
// from true north, 0 <= bearing < 360. 0 at the Kaaba and at its antipode, where every direction or none
// leads there. At a pole "north" is the direction in which the place's own meridian runs on, so that the
// bearing follows the longitude given.
[[nodiscard]] double QiblaBearing(const Place& place);

} // namespace calculation
