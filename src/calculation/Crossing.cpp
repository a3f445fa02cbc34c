// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Crossing.h"

#include <algorithm>
#include <cmath>

namespace calculation {

// Newton's method, kept between the two sides by halving where it would leave them.
double TimeOf(const Crossing& crossing, const SunTrack& track, const Latitude& latitude)
{
    constexpr int kMostSteps = 40;
    constexpr double kEnough = 1e-6; // 0.09 s; the step just made leaves the square of that
    double below = crossing.below;
    double above = crossing.above;
    double time = crossing.guess;
    for (int step = 0; step < kMostSteps; ++step) {
        const SunTrack::Sample sample = track.Altitude(time, latitude);
        const double excess = sample.sine - crossing.sine;
        (excess < 0.0 ? below : above) = time;
        double next = time - excess / sample.rate;
        const auto [low, high] = std::minmax(below, above);
        // Written so that a step that is no number is refused too.
        if (!(next >= low && next <= high)) {
            next = 0.5 * (low + high);
        }
        const double moved = std::abs(next - time);
        time = next;
        if (moved < kEnough) {
            break;
        }
    }
    return time;
}

} // namespace calculation
