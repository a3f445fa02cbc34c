// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Nutation.h"

#include "calculation/Angle.h"
#include "calculation/Series.h"

#include <array>
#include <cstddef>

namespace calculation {

namespace {

constexpr double kDaysPerCentury = 36525.0;

// Multiples of the moon's mean elongation, the sun's and the moon's mean anomaly, the moon's argument of
// latitude and the longitude of its node; then the coefficients, in units of 0.0001".
struct NutationTerm
{
    int elongation;
    int sunAnomaly;
    int moonAnomaly;
    int latitudeArgument;
    int node;
    double longitude;
    double obliquity;
};

constexpr std::array<NutationTerm, 23> kTerms{{
    {0, 0, 0, 0, 1, -171996, 92025}, {-2, 0, 0, 2, 2, -13187, 5736}, {0, 0, 0, 2, 2, -2274, 977},
    {0, 0, 0, 0, 2, 2062, -895},     {0, 1, 0, 0, 0, 1426, 54},      {0, 0, 1, 0, 0, 712, -7},
    {-2, 1, 0, 2, 2, -517, 224},     {0, 0, 0, 2, 1, -386, 200},     {0, 0, 1, 2, 2, -301, 129},
    {-2, -1, 0, 2, 2, 217, -95},     {-2, 0, 1, 0, 0, -158, 0},      {-2, 0, 0, 2, 1, 129, -70},
    {0, 0, -1, 2, 2, 123, -53},      {2, 0, 0, 0, 0, 63, 0},         {0, 0, 1, 0, 1, 63, -33},
    {2, 0, -1, 2, 2, -59, 26},       {0, 0, -1, 0, 1, -58, 32},      {0, 0, 1, 2, 1, -51, 27},
    {-2, 0, 2, 0, 0, 48, 0},         {0, 0, -2, 2, 1, 46, -24},      {2, 0, 0, 2, 2, -38, 16},
    {0, 0, 2, 2, 2, -31, 13},        {0, 0, 2, 0, 0, 29, 0},
}};

// The fundamental arguments in degrees at the epoch and per century (Meeus, chapter 22). Their slow curvature
// moves no term by 0.001" within two centuries.
constexpr double kElongation[2] = {297.85036, 445267.111480};
constexpr double kSunAnomaly[2] = {357.52772, 35999.050340};
constexpr double kMoonAnomaly[2] = {134.96298, 477198.867398};
constexpr double kLatitudeArgument[2] = {93.27191, 483202.017538};
constexpr double kNode[2] = {125.04452, -1934.136261};

// The sum of a term's multiples, of the angles at the epoch ([0]) or of their rates ([1]).
constexpr double Combine(const NutationTerm& term, std::size_t part)
{
    return term.elongation * kElongation[part] + term.sunAnomaly * kSunAnomaly[part] +
           term.moonAnomaly * kMoonAnomaly[part] + term.latitudeArgument * kLatitudeArgument[part] +
           term.node * kNode[part];
}

using NutationSeries = std::array<Term, kTerms.size()>;

constexpr NutationSeries SeriesOf(double NutationTerm::*coefficient, double shiftInDegrees)
{
    NutationSeries series{};
    for (std::size_t i = 0; i < series.size(); ++i) {
        const NutationTerm& term = kTerms[i];
        series[i] = {term.*coefficient, (Combine(term, 0) + shiftInDegrees) * kRadiansPerDegree,
                     Combine(term, 1) * kRadiansPerDegree};
    }
    return series;
}

// The terms in longitude are sines: the cosine of 90 degrees less.
constexpr NutationSeries kLongitude = SeriesOf(&NutationTerm::longitude, -90.0);
constexpr NutationSeries kObliquity = SeriesOf(&NutationTerm::obliquity, 0.0);

} // namespace

Nutation NutationAt(double daysSince2000)
{
    constexpr double kUnit = 0.0001 * kRadiansPerArcsecond;
    const double centuries = daysSince2000 / kDaysPerCentury;
    return {kUnit * Sum(kLongitude, centuries), kUnit * Sum(kObliquity, centuries)};
}

double MeanObliquity(double daysSince2000)
{
    const double centuries = daysSince2000 / kDaysPerCentury;
    const double arcseconds =
        84381.406 + centuries * (-46.836769 + centuries * (-0.0001831 + centuries * 0.00200340));
    return arcseconds * kRadiansPerArcsecond;
}

double PrecessionCorrection(double daysSince2000)
{
    constexpr double kArcsecondsPerCentury = 5028.796195 - 5029.0966;
    return kArcsecondsPerCentury * kRadiansPerArcsecond * daysSince2000 / kDaysPerCentury;
}

} // namespace calculation
