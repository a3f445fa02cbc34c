// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Elevation.h"

#include "calculation/Angle.h"
#include "calculation/DeltaT.h"
#include "calculation/Moon.h"
#include "calculation/SiderealTime.h"

#include <algorithm>
#include <cmath>

namespace calculation {

namespace {

double DegreesOfSine(double sine)
{
    return std::asin(std::clamp(sine, -1.0, 1.0)) / kRadiansPerDegree;
}

} // namespace

double SunElevation(const SunTrack& track, const Latitude& latitude, double time)
{
    return DegreesOfSine(track.TopocentricSine(track.Altitude(time, latitude).sine));
}

double MoonElevation(const Place& place, double daysSince2000)
{
    constexpr double kFlattening = 1.0 / 298.257;
    constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);

    const MoonPosition moon = ApparentMoon(daysSince2000 + DeltaT(daysSince2000) / 86400.0);
    const SineCosine sidereal =
        SineCosineOf((GreenwichMeanSiderealTime(daysSince2000) + place.LongitudeTurns()) * kTurn +
                     moon.equationOfEquinoxes);
    const Latitude latitude = Latitude::FromDegrees(place.LatitudeDegrees());

    // In the plane of the place's meridian, in earth radii: towards the celestial equator, east, and the
    // pole.
    const double equator =
        moon.distance * (moon.direction.x * sidereal.cosine + moon.direction.y * sidereal.sine);
    const double east =
        moon.distance * (moon.direction.y * sidereal.cosine - moon.direction.x * sidereal.sine);
    const double pole = moon.distance * moon.direction.z;

    const double curvature = 1.0 / std::sqrt(1.0 - kEccentricitySquared * latitude.Sine() * latitude.Sine());
    const double equatorFromPlace = equator - curvature * latitude.Cosine();
    const double poleFromPlace = pole - curvature * (1.0 - kEccentricitySquared) * latitude.Sine();
    const double distance =
        std::sqrt(equatorFromPlace * equatorFromPlace + east * east + poleFromPlace * poleFromPlace);
    return DegreesOfSine((equatorFromPlace * latitude.Cosine() + poleFromPlace * latitude.Sine()) / distance);
}

} // namespace calculation
