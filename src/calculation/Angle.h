// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

namespace calculation {

inline constexpr double kTurn = 2.0 * std::numbers::pi; // in radians
inline constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
inline constexpr double kRadiansPerArcsecond = kRadiansPerDegree / 3600.0;

struct SineCosine
{
    double sine = 0.0;
    double cosine = 1.0;
};

[[nodiscard]] inline SineCosine SineCosineOf(double radians)
{
    return {std::sin(radians), std::cos(radians)};
}

// The angle in turns without its whole turns, -0.5 to 0.5.
[[nodiscard]] inline double WithinHalfTurn(double turns)
{
    return std::remainder(turns, 1.0);
}

// The angle of a sine in degrees, -90 to 90. Rounding may make the sine slightly larger than 1.
[[nodiscard]] inline double DegreesOfSine(double sine)
{
    return std::asin(std::clamp(sine, -1.0, 1.0)) / kRadiansPerDegree;
}

} // namespace calculation
