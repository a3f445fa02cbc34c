// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Crossing.h"

#include "calculation/Angle.h"

#include <algorithm>
#include <cmath>

namespace calculation {

// Halley's method (Newton's, with the curvature), kept between the two sides by halving where it would leave
// them. It triples the good digits with each step, so that one evaluation of the altitude settles an ordinary
// event.
double TimeOf(const Crossing& crossing, const SunTrack& track, const Latitude& latitude)
{
    constexpr int kMostSteps = 40;
    constexpr double kEnough = 1e-8; // days: a thousandth of a second
    double below = crossing.below;
    double above = crossing.above;
    double time = crossing.guess;
    for (int step = 0; step < kMostSteps; ++step) {
        const SunTrack::Sample sample = track.Altitude(time, latitude);
        const double excess = sample.sine - crossing.sine;
        (excess < 0.0 ? below : above) = time;
        const double newton = -excess / sample.rate;
        const double bend = 0.5 * sample.curvature / sample.rate;
        double move = newton / (1.0 + bend * newton);
        const double low = std::min(below, above);
        const double high = std::max(below, above);
        double error = std::abs(move * move * move) * (bend * bend + kTurn * kTurn / 6.0);
        // Written so that a step that is no number is refused too.
        if (!(time + move >= low && time + move <= high)) {
            move = 0.5 * (low + high) - time;
            error = high - low;
        }
        time += move;
        if (error < kEnough) {
            break;
        }
    }
    return time;
}

} // namespace calculation
