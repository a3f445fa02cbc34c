// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Place.h"

#include "calculation/Angle.h"

#include <algorithm>
#include <cmath>

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

double QiblaBearing(const Place& place)
{
    constexpr double kKaabaLatitude = 21.4225 * kRadiansPerDegree;
    constexpr double kKaabaLongitude = 39.8262;
    // Half of the 0.01 degrees to which places are given, so that the nearest place counts as the Kaaba.
    constexpr double kSamePlace = 0.005 * kRadiansPerDegree;

    const double latitude = place.LatitudeDegrees() * kRadiansPerDegree;
    const double eastward = (kKaabaLongitude - place.LongitudeDegrees()) * kRadiansPerDegree;
    const double east = std::sin(eastward) * std::cos(kKaabaLatitude);
    const double north = std::cos(latitude) * std::sin(kKaabaLatitude) -
                         std::sin(latitude) * std::cos(kKaabaLatitude) * std::cos(eastward);
    if (std::hypot(east, north) < kSamePlace) {
        return 0.0;
    }
    const double bearing = std::atan2(east, north) / kRadiansPerDegree;
    return bearing < 0.0 ? bearing + 360.0 : bearing;
}

} // namespace calculation
