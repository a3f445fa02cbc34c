// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/EarthOrientation.h"

#include "calculation/Angle.h"
#include "calculation/Series.h"

#include <array>
#include <cstddef>

namespace calculation {

namespace {

constexpr double kDaysPerCentury = 36525.0;

// Delta T in seconds as a polynomial in (year - origin) / unit, for years before end.
struct Span
{
    double end;
    double origin;
    double unit;
    std::array<double, 8> coefficients;
};

constexpr std::array<Span, 11> kSpans{{
    {-500.0, 1820.0, 100.0, {-20.0, 0.0, 32.0}},
    {500.0, 0.0, 100.0, {10583.6, -1014.41, 33.78311, -5.952053, -0.1798452, 0.022174192, 0.0090316521}},
    {1600.0, 1000.0, 100.0, {1574.2, -556.01, 71.23472, 0.319781, -0.8503463, -0.005050998, 0.0083572073}},
    {1700.0, 1600.0, 1.0, {120.0, -0.9808, -0.01532, 1.0 / 7129.0}},
    {1800.0, 1700.0, 1.0, {8.83, 0.1603, -0.0059285, 0.00013336, -1.0 / 1174000.0}},
    {1860.0,
     1800.0,
     1.0,
     {13.72, -0.332447, 0.0068612, 0.0041116, -0.00037436, 0.0000121272, -0.0000001699, 0.000000000875}},
    {1900.0, 1860.0, 1.0, {7.62, 0.5737, -0.251754, 0.01680668, -0.0004473624, 1.0 / 233174.0}},
    {1920.0, 1900.0, 1.0, {-2.79, 1.494119, -0.0598939, 0.0061966, -0.000197}},
    {1941.0, 1920.0, 1.0, {21.20, 0.84493, -0.076100, 0.0020936}},
    {1961.0, 1950.0, 1.0, {29.07, 0.407, -1.0 / 233.0, 1.0 / 2547.0}},
    {1986.0, 1975.0, 1.0, {45.45, 1.067, -1.0 / 260.0, -1.0 / 718.0}},
}};
constexpr Span kLastSpan{
    2005.0, 2000.0, 1.0, {63.86, 0.3345, -0.060374, 0.0017275, 0.000651814, 0.00002373599}};

// Delta T in seconds on 1 January of 2005 and of each year after it.
constexpr std::array<double, 22> kObserved{64.69, 64.85, 65.15, 65.46, 65.78, 66.07, 66.32, 66.60,
                                           66.91, 67.28, 67.64, 68.10, 68.59, 68.97, 69.22, 69.36,
                                           69.36, 69.29, 69.20, 69.18, 69.14, 69.11};
constexpr double kFirstObservedYear = 2005.0;
constexpr double kLastObservedYear = kFirstObservedYear + static_cast<double>(kObserved.size() - 1);

double Evaluate(const Span& span, double year)
{
    const double argument = (year - span.origin) / span.unit;
    double sum = 0.0;
    for (std::size_t power = span.coefficients.size(); power-- > 0;) {
        sum = sum * argument + span.coefficients[power];
    }
    return sum;
}

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

// The fundamental arguments in degrees at the epoch and per century (Meeus, chapter 22). The higher powers of
// time, left out, change no term by 0.001" within two centuries.
constexpr double kElongation[2] = {297.85036, 445267.111480};
constexpr double kSunAnomaly[2] = {357.52772, 35999.050340};
constexpr double kMoonAnomaly[2] = {134.96298, 477198.867398};
constexpr double kLatitudeArgument[2] = {93.27191, 483202.017538};
constexpr double kNode[2] = {125.04452, -1934.136261};

// The argument of a term: the sum of its multiples of the angles at the epoch ([0]) or of their rates ([1]).
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

// The terms in longitude are sines: sin x = cos(x - 90 degrees).
constexpr NutationSeries kLongitude = SeriesOf(&NutationTerm::longitude, -90.0);
constexpr NutationSeries kObliquity = SeriesOf(&NutationTerm::obliquity, 0.0);

} // namespace

double DeltaT(double daysSince2000)
{
    const double year = 2000.0 + (daysSince2000 + 0.5) / 365.2425;
    if (year >= kLastObservedYear) {
        const double centuries = (year - kLastObservedYear) / 100.0;
        return kObserved.back() + 32.5 * centuries * centuries;
    }
    if (year >= kFirstObservedYear) {
        const auto index = static_cast<std::size_t>(year - kFirstObservedYear);
        const double part = year - kFirstObservedYear - static_cast<double>(index);
        return kObserved[index] + part * (kObserved[index + 1] - kObserved[index]);
    }
    for (const Span& span : kSpans) {
        if (year < span.end) {
            return Evaluate(span, year);
        }
    }
    return Evaluate(kLastSpan, year);
}

double GreenwichMeanSiderealTime(double daysSince2000)
{
    constexpr double kArcsecondsPerTurn = 1296000.0;
    const double centuries = daysSince2000 / kDaysPerCentury;
    const double slow = centuries * centuries * 1.3915817;
    // Whole days are whole turns: drop them first, since large sums lose digits.
    return 0.7790572732640 + WithinHalfTurn(daysSince2000) + kSiderealGainPerDay * daysSince2000 +
           (0.014506 + slow) / kArcsecondsPerTurn;
}

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

Direction EquatorialDirection(const SineCosine& longitude, const SineCosine& latitude,
                              const SineCosine& obliquity)
{
    // The component towards ecliptic longitude 90 degrees, then rotated about the axis to the equinox.
    const double eastward = latitude.cosine * longitude.sine;
    return {latitude.cosine * longitude.cosine, eastward * obliquity.cosine - latitude.sine * obliquity.sine,
            eastward * obliquity.sine + latitude.sine * obliquity.cosine};
}

double PrecessionCorrection(double daysSince2000)
{
    constexpr double kArcsecondsPerCentury = 5028.796195 - 5029.0966;
    return kArcsecondsPerCentury * kRadiansPerArcsecond * daysSince2000 / kDaysPerCentury;
}

} // namespace calculation
