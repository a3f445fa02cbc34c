// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Sun.h"

#include "calculation/Angle.h"
#include "calculation/EarthSeries.h"
#include "calculation/Nutation.h"
#include "calculation/Series.h"

#include <cstddef>

namespace calculation {

namespace {

constexpr double kUnit = 1e-8;

// Constant of aberration (Meeus, "Astronomical Algorithms", 2nd ed., formula 25.10).
constexpr double kAberration = 20.4898 * kRadiansPerArcsecond;
// Parallax at the mean distance (IAU 1976).
constexpr double kParallax = 8.794 * kRadiansPerArcsecond;

ThreeDays EarthLongitude(double days)
{
    const double millennia = days / earth::kDaysPerMillennium;
    const ThreeDays power0 = earth::kLongitude0.Evaluate(days);
    const ThreeDays power1 = earth::kLongitude1.Evaluate(days);
    const ThreeDays power2 = earth::kLongitude2.Evaluate(days);
    const ThreeDays power3 = earth::kLongitude3.Evaluate(days);
    ThreeDays longitude{};
    for (std::size_t i = 0; i < longitude.size(); ++i) {
        const double daysOff = static_cast<double>(i) - 1.0;
        const double time = millennia + daysOff / earth::kDaysPerMillennium;
        const double periodic =
            power0[i] +
            time * (power1[i] + time * (earth::kSecularLongitude2 + power2[i] + time * power3[i]));
        longitude[i] = kUnit * (earth::kMeanLongitude + earth::kMeanMotion * time + periodic);
    }
    return longitude;
}

double EarthDistance(double days)
{
    const double millennia = days / earth::kDaysPerMillennium;
    return kUnit * (earth::kMeanDistance + earth::kDistance0.Evaluate(days)[1] +
                    millennia * earth::kDistance1.Evaluate(days)[1]);
}

} // namespace

double SunAround::HorizontalParallax() const
{
    return kParallax / distance;
}

SunAround ApparentSunAround(double daysSince2000)
{
    const ThreeDays longitudes = EarthLongitude(daysSince2000);
    const ThreeDays latitudes = earth::kLatitude0.Evaluate(daysSince2000);
    const Nutation nutation = NutationAround(daysSince2000);
    const SineCosine meanObliquity = SineCosineOfTurns(MeanObliquity(daysSince2000) / kTurn);

    SunAround sun;
    sun.distance = EarthDistance(daysSince2000);
    const double correction = PrecessionCorrection(daysSince2000) - kAberration / sun.distance;
    for (std::size_t i = 0; i < sun.directions.size(); ++i) {
        // Seen from the earth: half a turn on, and the latitude turned round. The latitude, below 1.2", and
        // the nutation, below 20", are their own sines.
        const double longitude = longitudes[i] + correction + nutation.inLongitude[i];
        const double latitude = -kUnit * latitudes[i];
        const SineCosine ecliptic = SineCosineOfTurns(longitude / kTurn + 0.5);
        const double sineOfObliquity = meanObliquity.sine + nutation.inObliquity[i] * meanObliquity.cosine;
        const double cosineOfObliquity = meanObliquity.cosine - nutation.inObliquity[i] * meanObliquity.sine;
        sun.directions[i] = {ecliptic.cosine, ecliptic.sine * cosineOfObliquity - latitude * sineOfObliquity,
                             ecliptic.sine * sineOfObliquity + latitude * cosineOfObliquity};
        sun.equationOfEquinoxes[i] = nutation.inLongitude[i] * cosineOfObliquity;
    }
    return sun;
}

} // namespace calculation
