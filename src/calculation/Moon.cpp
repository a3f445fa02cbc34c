// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Moon.h"

#include "calculation/Angle.h"
#include "calculation/MoonTables.h"
#include "calculation/Nutation.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace calculation {

namespace {

constexpr double kEarthRadius = 6378.14; // kilometres, as in the parallax of Meeus, chapter 47
constexpr double kMillionths = 1e-6;

// Cosine and sine of an angle as one complex number, so that angles add by multiplication.
struct Phasor
{
    double real = 1.0;
    double imaginary = 0.0;

    constexpr Phasor operator*(const Phasor& other) const
    {
        return {real * other.real - imaginary * other.imaginary,
                real * other.imaginary + imaginary * other.real};
    }
};

// The phasors of the multiples of an angle from -Most to Most.
template <int Most>
class MultiplesOfAngle final
{
public:
    explicit MultiplesOfAngle(double turns)
    {
        const SineCosine angle = SineCosineOfTurns(turns);
        const Phasor one{angle.cosine, angle.sine};
        for (int multiple = 1; multiple <= Most; ++multiple) {
            const Phasor next = (*this)[multiple - 1] * one;
            m_phasors[Index(multiple)] = next;
            m_phasors[Index(-multiple)] = {next.real, -next.imaginary};
        }
    }

    const Phasor& operator[](int multiple) const { return m_phasors[Index(multiple)]; }

private:
    static constexpr std::size_t Index(int multiple)
    {
        const int index = Most + multiple;
        return static_cast<std::size_t>(index);
    }

    std::array<Phasor, 2 * Most + 1> m_phasors;
};

// The polynomials of Meeus, formulas 47.1 to 47.6, in degrees, and the three arguments of the planets.
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
    double eccentricity; // of the earth's orbit, against that of 2000
};

double SineOfDegrees(double degrees)
{
    return SineCosineOfTurns(degrees / 360.0).sine;
}

struct Sums
{
    double longitude = 0.0; // degrees
    double latitude = 0.0;  // degrees
    double distance = 0.0;  // kilometres
};

Sums SumTables(const Arguments& arguments)
{
    const MultiplesOfAngle<6> elongation(arguments.elongation / 360.0);
    const MultiplesOfAngle<3> sunAnomaly(arguments.sunAnomaly / 360.0);
    const MultiplesOfAngle<4> moonAnomaly(arguments.moonAnomaly / 360.0);
    const MultiplesOfAngle<4> latitudeArgument(arguments.latitudeArgument / 360.0);
    const double e = arguments.eccentricity;
    const std::array<double, 4> eccentricity{1.0, e, e * e, e * e * e};

    const auto phasor = [&](const moon::Multiples& multiples) {
        return elongation[multiples.elongation] * sunAnomaly[multiples.sunAnomaly] *
               (moonAnomaly[multiples.moonAnomaly] * latitudeArgument[multiples.latitudeArgument]);
    };
    const auto weight = [&](const moon::Multiples& multiples) {
        return eccentricity[static_cast<std::size_t>(std::abs(multiples.sunAnomaly))];
    };
    const auto sumOfSines = [&](const auto& terms) {
        double sum = 0.0;
        for (const moon::SineTerm& term : terms) {
            sum += weight(term.multiples) * term.amplitude * phasor(term.multiples).imaginary;
        }
        return sum;
    };

    Sums sums;
    for (const moon::LongitudeTerm& term : moon::kLongitudeTerms) {
        const Phasor argument = phasor(term.multiples);
        sums.longitude += weight(term.multiples) * term.longitude * argument.imaginary;
        sums.distance += weight(term.multiples) * term.distance * argument.real;
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
    const Nutation nutation = NutationAround(daysSince2000);

    const double meanLongitude = (arguments.longitude + sums.longitude) / 360.0;
    const double correction = PrecessionCorrection(daysSince2000) + nutation.inLongitude[1];
    const SineCosine longitude = SineCosineOfTurns(meanLongitude + correction / kTurn);
    const SineCosine latitude = SineCosineOfTurns(sums.latitude / 360.0);
    const SineCosine obliquity =
        SineCosineOfTurns((MeanObliquity(daysSince2000) + nutation.inObliquity[1]) / kTurn);

    MoonPosition moon;
    const double eastward = latitude.cosine * longitude.sine;
    moon.direction = {latitude.cosine * longitude.cosine,
                      eastward * obliquity.cosine - latitude.sine * obliquity.sine,
                      eastward * obliquity.sine + latitude.sine * obliquity.cosine};
    moon.distance = (385000.56 + sums.distance) / kEarthRadius;
    moon.equationOfEquinoxes = nutation.inLongitude[1] * obliquity.cosine;
    return moon;
}

} // namespace calculation
