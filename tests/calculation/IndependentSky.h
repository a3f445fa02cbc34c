// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Sun.h"

#include <erfa.h>
#include <erfam.h>
#include <libnova/ln_types.h>
#include <libnova/lunar.h>

#include <cmath>

// Sun and moon from independent libraries: ERFA (the IAU's routines: VSOP2000 in epv00, precession and
// nutation of IAU 2006/2000A) and the whole of ELP-2000/82 in libnova. This header uses nothing of the
// calculation itself.
namespace independent {

inline constexpr double kEpoch = 2451545.0;

inline calculation::Direction ToEquatorOfDate(double (&direction)[3], double daysTt)
{
    double matrix[3][3];
    eraPnm06a(kEpoch, daysTt, matrix);
    eraRxp(matrix, direction, direction);
    return {direction[0], direction[1], direction[2]};
}

// Apparent geocentric direction, true equator and equinox of date; daysTt: days of TT from 2000 January 1,
// 12h.
[[nodiscard]] inline calculation::Direction Sun(double daysTt)
{
    constexpr double kLightInAstronomicalUnitsPerDay = 173.1446326846693;
    double heliocentric[2][3];
    double barycentric[2][3];
    eraEpv00(kEpoch, daysTt, heliocentric, barycentric);
    double distance = 0.0;
    double towards[3];
    double velocity[3];
    double apparent[3];
    eraSxp(-1.0, heliocentric[0], towards);
    eraPn(towards, &distance, towards);
    eraSxp(1.0 / kLightInAstronomicalUnitsPerDay, barycentric[1], velocity);
    eraAb(towards, velocity, distance, std::sqrt(1.0 - eraPdp(velocity, velocity)), apparent);
    return ToEquatorOfDate(apparent, daysTt);
}

struct MoonPosition
{
    calculation::Direction direction;
    double kilometres;
};

// As the sun.
[[nodiscard]] inline MoonPosition Moon(double daysTt)
{
    // Ecliptic of 2000; the position 1.28 s earlier, for the light time.
    constexpr double kObliquity2000 = 84381.40889 * ERFA_DAS2R;
    ln_rect_posn position{};
    ln_get_lunar_geo_posn(kEpoch + daysTt - 1.28 / ERFA_DAYSEC, &position, 0.0);
    double direction[3] = {position.X, position.Y, position.Z};
    double toEquator[3][3];
    double distance = 0.0;
    eraIr(toEquator);
    eraRx(-kObliquity2000, toEquator);
    eraRxp(toEquator, direction, direction);
    eraPn(direction, &distance, direction);
    return {ToEquatorOfDate(direction, daysTt), distance};
}

// Arcseconds.
[[nodiscard]] inline double Separation(const calculation::Direction& one, const calculation::Direction& other)
{
    double first[3] = {one.x, one.y, one.z};
    double second[3] = {other.x, other.y, other.z};
    return eraSepp(first, second) * ERFA_DR2AS;
}

// Local hour angle of the sun in radians; daysUt: days of UT1 from 2000 January 1, 12h; deltaT in seconds,
// longitude in degrees. Sets the sun's direction.
[[nodiscard]] inline double SunHourAngle(double daysUt, double deltaT, double longitude,
                                         calculation::Direction& sun)
{
    const double daysTt = daysUt + deltaT / ERFA_DAYSEC;
    sun = Sun(daysTt);
    return eraGst06a(kEpoch, daysUt, kEpoch, daysTt) + longitude * ERFA_DD2R - std::atan2(sun.y, sun.x);
}

// The same in degrees, -180 to 180.
[[nodiscard]] inline double SunHourAngle(double daysUt, double deltaT, double longitude)
{
    calculation::Direction sun;
    return eraAnpm(SunHourAngle(daysUt, deltaT, longitude, sun)) * ERFA_DR2D;
}

// Topocentric altitude of the sun's centre without refraction; latitude and result in degrees.
[[nodiscard]] inline double SunAltitude(double daysUt, double deltaT, double latitude, double longitude)
{
    constexpr double kParallaxAtUnit = 8.794143 * ERFA_DAS2R;
    calculation::Direction sun;
    const double hourAngle = SunHourAngle(daysUt, deltaT, longitude, sun);
    double azimuth = 0.0;
    double altitude = 0.0;
    eraHd2ae(hourAngle, std::asin(sun.z), latitude * ERFA_DD2R, &azimuth, &altitude);
    return (altitude - kParallaxAtUnit * std::cos(altitude)) * ERFA_DR2D;
}

} // namespace independent
