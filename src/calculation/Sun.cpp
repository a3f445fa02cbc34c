// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Sun.h"

#include "calculation/Angle.h"
#include "calculation/EarthOrientation.h"
#include "calculation/EarthSeries.h"
#include "calculation/Series.h"

#include <cstddef>

namespace calculation {

namespace {

constexpr double kUnit = 1e-8;
constexpr double kDaysPerMillennium = 365250.0;

// Constant of aberration (Meeus, "Astronomical Algorithms", 2nd ed., chapter 25).
constexpr double kAberration = 20.4898 * kRadiansPerArcsecond;
// Parallax at one astronomical unit (IAU 1976).
constexpr double kParallax = 8.794 * kRadiansPerArcsecond;

// Heliocentric longitude and latitude in radians, distance in astronomical units: sums of series times powers
// of the time (Meeus, chapter 32).
double EarthLongitude(double millennia)
{
    const double t = millennia;
    return kUnit * (Sum(earth::kLongitude0, t) +
                    t * (Sum(earth::kLongitude1, t) +
                         t * (Sum(earth::kLongitude2, t) + t * Sum(earth::kLongitude3, t))));
}

double EarthLatitude(double millennia)
{
    return kUnit * Sum(earth::kLatitude0, millennia);
}

double EarthDistance(double millennia)
{
    return kUnit * (Sum(earth::kDistance0, millennia) + millennia * Sum(earth::kDistance1, millennia));
}

} // namespace

double SunAround::HorizontalParallax() const
{
    return kParallax / distance;
}

SunAround ApparentSunAround(double daysSince2000)
{
    SunAround sun;
    sun.distance = EarthDistance(daysSince2000 / kDaysPerMillennium);
    const double correction = PrecessionCorrection(daysSince2000) - kAberration / sun.distance;
    const SineCosine meanObliquity = SineCosineOf(MeanObliquity(daysSince2000));
    for (std::size_t i = 0; i < sun.directions.size(); ++i) {
        const double days = daysSince2000 + static_cast<double>(i) - 1.0;
        const double millennia = days / kDaysPerMillennium;
        const Nutation nutation = NutationAt(days);
        // Nutation (below 20") and latitude (below 1.2") are small enough for sin x = x.
        const SineCosine obliquity{meanObliquity.sine + nutation.inObliquity * meanObliquity.cosine,
                                   meanObliquity.cosine - nutation.inObliquity * meanObliquity.sine};
        // Geocentric: half a turn is added to the longitude, the latitude changes its sign (Meeus, chapter
        // 25).
        const SineCosine longitude =
            SineCosineOf(EarthLongitude(millennia) + 0.5 * kTurn + correction + nutation.inLongitude);
        const SineCosine latitude{-EarthLatitude(millennia), 1.0};
        sun.directions[i] = EquatorialDirection(longitude, latitude, obliquity);
        sun.equationOfEquinoxes[i] = nutation.inLongitude * obliquity.cosine;
    }
    return sun;
}

} // namespace calculation
