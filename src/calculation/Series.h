// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"

#include <array>
#include <cstddef>

namespace calculation {

// A quantity at three instants, one day apart: [0] the day before, [1] the instant itself, [2] the day after.
using ThreeDays = std::array<double, 3>;

// A term of a published series: amplitude * cos(phase + frequency * time), phase and frequency in the units
// of the publication.
struct PublishedTerm
{
    double amplitude;
    double phase;
    double frequency;
};

// A series of cosines made ready for evaluation at three instants one day apart: one sine and cosine for each
// term serve for all three, since a day turns each argument by a constant, whose sine and cosine are kept.
template <std::size_t Count>
struct Series
{
    std::array<double, Count> amplitude{};
    std::array<double, Count> phase{};     // turns
    std::array<double, Count> frequency{}; // turns per day
    std::array<double, Count> sineOfStep{};
    std::array<double, Count> cosineOfStep{};

    // unitPerTurn: how many of the publication's units of angle make a turn; daysPerUnit: its unit of time.
    constexpr Series(const std::array<PublishedTerm, Count>& terms, double unitPerTurn, double daysPerUnit)
    {
        for (std::size_t i = 0; i < Count; ++i) {
            amplitude[i] = terms[i].amplitude;
            phase[i] = terms[i].phase / unitPerTurn;
            frequency[i] = terms[i].frequency / unitPerTurn / daysPerUnit;
            const SineCosine step = SineCosineOfTurns(frequency[i]);
            sineOfStep[i] = step.sine;
            cosineOfStep[i] = step.cosine;
        }
    }

    // In the unit of the amplitudes.
    [[nodiscard]] ThreeDays Evaluate(double days) const
    {
        std::array<double, Count> sine;
        std::array<double, Count> cosine;
        for (std::size_t i = 0; i < Count; ++i) {
            const SineCosine argument = SineCosineOfTurns(phase[i] + frequency[i] * days);
            sine[i] = amplitude[i] * argument.sine;
            cosine[i] = amplitude[i] * argument.cosine;
        }
        double here = 0.0;
        double even = 0.0;
        double odd = 0.0;
        for (std::size_t i = 0; i < Count; ++i) {
            here += cosine[i];
            even += cosine[i] * cosineOfStep[i];
            odd += sine[i] * sineOfStep[i];
        }
        return {even + odd, here, even - odd};
    }
};

} // namespace calculation
