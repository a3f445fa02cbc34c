// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/DeltaT.h"

#include <array>
#include <cstddef>

namespace calculation {

namespace {

// Seconds as a polynomial in (year - origin) / unit, valid up to the year end.
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

// 1 January of 2005 and of each year on.
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

} // namespace calculation
