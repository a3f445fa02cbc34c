// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <numbers>

namespace calculation {

inline constexpr double kTurn = 2.0 * std::numbers::pi;
inline constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
inline constexpr double kRadiansPerArcsecond = kRadiansPerDegree / 3600.0;

struct SineCosine
{
    double sine = 0.0;
    double cosine = 1.0;
};

// The nearest whole number, for |value| below 2^51. Adding and taking away 1.5 * 2^52 leaves it to the unit
// that adds anyway, which the compiler turns into vector code; std::round it would call.
constexpr double NearestWhole(double value)
{
    constexpr double kRoundingAddend = 6755399441055744.0;
    return (value + kRoundingAddend) - kRoundingAddend;
}

// The angle less its whole turns, in turns: -0.5 to 0.5.
constexpr double WithinHalfTurn(double turns)
{
    return turns - NearestWhole(turns);
}

// Sine and cosine of an angle in turns, within 3e-11, for |turns| below 2^51. Whole turns go exactly and
// without a table, because an angle kept in turns needs no pi to be reduced; what is left is halved, so that
// Maclaurin's series of 8 terms serve for the sine and the cosine, and doubled back.
constexpr SineCosine SineCosineOfTurns(double turns)
{
    const double half = WithinHalfTurn(turns) * std::numbers::pi;
    const double square = half * half;
    const double sine =
        half *
        (1.0 +
         square * (-1.0 / 6.0 +
                   square * (1.0 / 120.0 +
                             square * (-1.0 / 5040.0 +
                                       square * (1.0 / 362880.0 +
                                                 square * (-1.0 / 39916800.0 +
                                                           square * (1.0 / 6227020800.0 +
                                                                     square * (-1.0 / 1307674368000.0))))))));
    const double cosine =
        1.0 +
        square *
            (-1.0 / 2.0 +
             square * (1.0 / 24.0 +
                       square * (-1.0 / 720.0 +
                                 square * (1.0 / 40320.0 +
                                           square * (-1.0 / 3628800.0 +
                                                     square * (1.0 / 479001600.0 +
                                                               square * (-1.0 / 87178291200.0 +
                                                                         square / 20922789888000.0)))))));
    return {2.0 * sine * cosine, 1.0 - 2.0 * sine * sine};
}

} // namespace calculation
