// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Place.h"

#include "calculation/Angle.h"

#include <algorithm>

namespace calculation {

Latitude Latitude::FromDegrees(double degrees)
{
    const SineCosine parts = SineCosineOf(degrees * kRadiansPerDegree);
    Latitude latitude;
    latitude.m_sine = parts.sine;
    latitude.m_cosine = std::max(0.0, parts.cosine);
    return latitude;
}

double Place::LatitudeDegrees() const
{
    return std::clamp(latitude / 100.0, -90.0, 90.0);
}

} // namespace calculation
