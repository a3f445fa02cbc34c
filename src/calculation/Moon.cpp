// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Moon.h"

#include "calculation/Angle.h"
#include "calculation/EarthOrientation.h"
#include "calculation/MoonTables.h"
#include "calculation/Series.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace calculation {

namespace {

constexpr double kEarthRadius = 6378.14; // kilometres, as in the parallax of Meeus, chapter 47
constexpr double kMillionths = 1e-6;

// The mean elements in degrees and the additional arguments A1 (Venus), A2 (Jupiter) and A3 (Meeus, chapter
// 47).
struct Arguments
{
    explicit Arguments(double centuries)
    {
        const double t = centuries;
        longitude =
            218.3164477 + t * (481267.88123421 + t * (-0.0015786 + t * (1.0 / 538841.0 - t / 65194000.0)));
        elongation =
            297.8501921 + t * (445267.1114034 + t * (-0.0018819 + t * (1.0 / 545868.0 - t / 113065000.0)));
        sunAnomaly = 357.5291092 + t * (35999.0502909 + t * (-0.0001536 + t / 24490000.0));
        moonAnomaly =
            134.9633964 + t * (477198.8675055 + t * (0.0087414 + t * (1.0 / 69699.0 - t / 14712000.0)));
        latitudeArgument =
            93.2720950 + t * (483202.0175233 + t * (-0.0036539 + t * (-1.0 / 3526000.0 + t / 863310000.0)));
        venus = 119.75 + 131.849 * t;
        jupiter = 53.09 + 479264.290 * t;
        third = 313.45 + 481266.484 * t;
        eccentricity = 1.0 + t * (-0.002516 - 0.0000074 * t);
    }

    double longitude;
    double elongation;
    double sunAnomaly;
    double moonAnomaly;
    double latitudeArgument;
    double venus;
    double jupiter;
    double third;
    double eccentricity; // of the earth's orbit, relative to that of 2000
};

double CosineOfDegrees(double degrees)
{
    return Cosine(degrees * kRadiansPerDegree);
}

double SineOfDegrees(double degrees)
{
    return CosineOfDegrees(degrees - 90.0);
}

struct Sums
{
    double longitude = 0.0; // degrees
    double latitude = 0.0;  // degrees
    double distance = 0.0;  // kilometres
};

// Tables 47.A and 47.B with the additive terms after them (Meeus, chapter 47). A term with the sun's anomaly
// is multiplied by the eccentricity of the earth's orbit once for each multiple of the anomaly.
Sums SumTables(const Arguments& arguments)
{
    const auto argument = [&](const moon::Multiples& multiples) {
        return multiples.elongation * arguments.elongation + multiples.sunAnomaly * arguments.sunAnomaly +
               multiples.moonAnomaly * arguments.moonAnomaly +
               multiples.latitudeArgument * arguments.latitudeArgument;
    };
    const double e = arguments.eccentricity;
    const std::array<double, 4> powersOfEccentricity{1.0, e, e * e, e * e * e};
    const auto weight = [&](const moon::Multiples& multiples) {
        return powersOfEccentricity[static_cast<std::size_t>(std::abs(multiples.sunAnomaly))];
    };
    const auto sumOfSines = [&](const auto& terms) {
        double sum = 0.0;
        for (const moon::SineTerm& term : terms) {
            sum += weight(term.multiples) * term.amplitude * SineOfDegrees(argument(term.multiples));
        }
        return sum;
    };

    Sums sums;
    for (const moon::LongitudeTerm& term : moon::kLongitudeTerms) {
        const double degrees = argument(term.multiples);
        sums.longitude += weight(term.multiples) * term.longitude * SineOfDegrees(degrees);
        sums.distance += weight(term.multiples) * term.distance * CosineOfDegrees(degrees);
    }
    sums.longitude += sumOfSines(moon::kFurtherLongitudeTerms);
    sums.latitude += sumOfSines(moon::kLatitudeTerms) + sumOfSines(moon::kFurtherLatitudeTerms);
    sums.longitude += 3958.0 * SineOfDegrees(arguments.venus) +
                      1962.0 * SineOfDegrees(arguments.longitude - arguments.latitudeArgument) +
                      318.0 * SineOfDegrees(arguments.jupiter);
    sums.latitude += -2235.0 * SineOfDegrees(arguments.longitude) + 382.0 * SineOfDegrees(arguments.third) +
                     175.0 * SineOfDegrees(arguments.venus - arguments.latitudeArgument) +
                     175.0 * SineOfDegrees(arguments.venus + arguments.latitudeArgument) +
                     127.0 * SineOfDegrees(arguments.longitude - arguments.moonAnomaly) -
                     115.0 * SineOfDegrees(arguments.longitude + arguments.moonAnomaly);
    return {sums.longitude * kMillionths, sums.latitude * kMillionths, sums.distance / 1000.0};
}

} // namespace

MoonPosition ApparentMoon(double daysSince2000)
{
    const Arguments arguments(daysSince2000 / 36525.0);
    const Sums sums = SumTables(arguments);
    const Nutation nutation = NutationAt(daysSince2000);

    // Apparent place: the true equinox, and the obliquity with its nutation.
    const double correction = PrecessionCorrection(daysSince2000) + nutation.inLongitude;
    const SineCosine longitude =
        SineCosineOf((arguments.longitude + sums.longitude) * kRadiansPerDegree + correction);
    const SineCosine latitude = SineCosineOf(sums.latitude * kRadiansPerDegree);
    const SineCosine obliquity = SineCosineOf(MeanObliquity(daysSince2000) + nutation.inObliquity);

    MoonPosition moon;
    moon.direction = EquatorialDirection(longitude, latitude, obliquity);
    moon.distance = (385000.56 + sums.distance) / kEarthRadius;
    moon.equationOfEquinoxes = nutation.inLongitude * obliquity.cosine;
    return moon;
}

double MoonElevation(const Place& place, double daysSince2000)
{
    constexpr double kSecondsPerDay = 86400.0;
    constexpr double kFlattening = 1.0 / 298.257;
    constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);

    const MoonPosition moon = ApparentMoon(daysSince2000 + DeltaT(daysSince2000) / kSecondsPerDay);
    const double meanTime = GreenwichMeanSiderealTime(daysSince2000) + place.LongitudeTurns();
    const SineCosine sidereal = SineCosineOf(meanTime * kTurn + moon.equationOfEquinoxes);
    const Latitude latitude = Latitude::FromDegrees(place.LatitudeDegrees());

    // The geocentric position in earth radii, turned to the meridian of the place: towards the equator, the
    // east and the pole.
    const double equator =
        moon.distance * (moon.direction.x * sidereal.cosine + moon.direction.y * sidereal.sine);
    const double east =
        moon.distance * (moon.direction.y * sidereal.cosine - moon.direction.x * sidereal.sine);
    const double pole = moon.distance * moon.direction.z;

    // Subtract the position of the place on the ellipsoid (Meeus, chapter 11).
    const double curvature = 1.0 / std::sqrt(1.0 - kEccentricitySquared * latitude.Sine() * latitude.Sine());
    const double equatorFromPlace = equator - curvature * latitude.Cosine();
    const double poleFromPlace = pole - curvature * (1.0 - kEccentricitySquared) * latitude.Sine();
    const double distance =
        std::sqrt(equatorFromPlace * equatorFromPlace + east * east + poleFromPlace * poleFromPlace);
    return DegreesOfSine((equatorFromPlace * latitude.Cosine() + poleFromPlace * latitude.Sine()) / distance);
}

} // namespace calculation
