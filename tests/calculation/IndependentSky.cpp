// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/IndependentSky.h"

#include <erfa.h>
#include <libnova/ln_types.h>
#include <libnova/lunar.h>

#include <array>
#include <cmath>
#include <numbers>

namespace independent {

namespace {

using calculation::Direction;

constexpr double kEpoch = 2451545.0;
constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
constexpr double kArcsecondsPerRadian = 206264.80624709636;

using Vector = double[3];
using Matrix = double[3][3];

Direction ToEquatorOfDate(const Vector& direction, double daysTt)
{
    Matrix matrix;
    eraPnm06a(kEpoch, daysTt, matrix);
    Vector copy = {direction[0], direction[1], direction[2]};
    Vector turned;
    eraRxp(matrix, copy, turned);
    return {turned[0], turned[1], turned[2]};
}

double ApparentSiderealTime(double daysUt, double deltaT)
{
    return eraGst06a(kEpoch, daysUt, kEpoch, daysUt + deltaT / 86400.0);
}

} // namespace

Direction Sun(double daysTt)
{
    double heliocentric[2][3];
    double barycentric[2][3];
    eraEpv00(kEpoch, daysTt, heliocentric, barycentric);
    const double distance = eraPm(heliocentric[0]);
    Vector towards;
    Vector velocity;
    double square = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        constexpr double kLightInAstronomicalUnitsPerDay = 173.1446326846693;
        towards[axis] = -heliocentric[0][axis] / distance;
        velocity[axis] = barycentric[1][axis] / kLightInAstronomicalUnitsPerDay;
        square += velocity[axis] * velocity[axis];
    }
    Vector apparent;
    eraAb(towards, velocity, distance, std::sqrt(1.0 - square), apparent);
    return ToEquatorOfDate(apparent, daysTt);
}

MoonPosition Moon(double daysTt)
{
    // Ecliptic of 2000, seen where it stood 1.28 s ago, the time of its light.
    ln_rect_posn position{};
    ln_get_lunar_geo_posn(kEpoch + daysTt - 1.28 / 86400.0, &position, 0.0);
    constexpr double kObliquity2000 = 84381.40889 / kArcsecondsPerRadian;
    const double sine = std::sin(kObliquity2000);
    const double cosine = std::cos(kObliquity2000);
    const double length = std::hypot(position.X, position.Y, position.Z);
    const Vector equatorial = {position.X / length, (position.Y * cosine - position.Z * sine) / length,
                               (position.Y * sine + position.Z * cosine) / length};
    return {ToEquatorOfDate(equatorial, daysTt), length};
}

double Separation(const Direction& one, const Direction& other)
{
    // The chord, which keeps its digits where the angle is small.
    const double chord = std::hypot(one.x - other.x, one.y - other.y, one.z - other.z);
    return 2.0 * std::asin(0.5 * chord) * kArcsecondsPerRadian;
}

double SunAltitude(double daysUt, double deltaT, double latitude, double longitude)
{
    constexpr double kParallaxAtUnit = 8.794143 / kArcsecondsPerRadian;
    const Direction sun = Sun(daysUt + deltaT / 86400.0);
    const double sidereal = ApparentSiderealTime(daysUt, deltaT) + longitude * kRadiansPerDegree;
    const double hourAngle = sidereal - std::atan2(sun.y, sun.x);
    const double sine =
        std::sin(latitude * kRadiansPerDegree) * sun.z +
        std::cos(latitude * kRadiansPerDegree) * std::hypot(sun.x, sun.y) * std::cos(hourAngle);
    const double altitude = std::asin(sine);
    return (altitude - kParallaxAtUnit * std::cos(altitude)) / kRadiansPerDegree;
}

double SunHourAngle(double daysUt, double deltaT, double longitude)
{
    const Direction sun = Sun(daysUt + deltaT / 86400.0);
    const double sidereal = ApparentSiderealTime(daysUt, deltaT) + longitude * kRadiansPerDegree;
    return std::remainder((sidereal - std::atan2(sun.y, sun.x)) / kRadiansPerDegree, 360.0);
}

} // namespace independent
