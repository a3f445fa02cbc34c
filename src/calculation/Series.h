// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Angle.h"

#include <array>
#include <cstddef>

namespace calculation {

// A quantity at three instants, one day apart: [0] the day before, [1] the instant itself, [2] the day after.
using ThreeDays = std::array<double, 3>;

// A term of a published series: amplitude * cos(phase + frequency * time), or a sine, phase and frequency in
// the units of the publication.
struct PublishedTerm
{
    double amplitude;
    double phase;
    double frequency;
};

// The terms of a series made ready for evaluation at three instants one day apart. One sine and one cosine
// for each term serve for all three, since a day turns each argument by a constant whose sine and cosine are
// kept.
template <std::size_t Count>
class Series final
{
public:
    using Column = std::array<double, Count>;

    // Sine and cosine of each argument at the middle instant.
    struct Arguments
    {
        Column sine;
        Column cosine;
    };

    // unitsPerTurn: how many of the publication's units of angle make a turn; daysPerUnit: its unit of time.
    constexpr Series(const std::array<PublishedTerm, Count>& terms, double unitsPerTurn, double daysPerUnit)
    {
        for (std::size_t i = 0; i < Count; ++i) {
            m_amplitude[i] = terms[i].amplitude;
            m_phase[i] = terms[i].phase / unitsPerTurn;
            m_frequency[i] = terms[i].frequency / unitsPerTurn / daysPerUnit;
            const SineCosine step = SineCosineOfTurns(m_frequency[i]);
            m_sineOfStep[i] = step.sine;
            m_cosineOfStep[i] = step.cosine;
        }
    }

    [[nodiscard]] Arguments ArgumentsAt(double days) const
    {
        // The loop fills it, and zeros before that would cost time.
        Arguments arguments; // NOLINT(cppcoreguidelines-pro-type-member-init)
        for (std::size_t i = 0; i < Count; ++i) {
            const SineCosine argument = SineCosineOfTurns(m_phase[i] + m_frequency[i] * days);
            arguments.sine[i] = argument.sine;
            arguments.cosine[i] = argument.cosine;
        }
        return arguments;
    }

    // Sums of amplitude * cosine, or sine, in the unit of the amplitudes.
    [[nodiscard]] ThreeDays Cosines(const Column& amplitude, const Arguments& arguments) const
    {
        const Sums sums = Sum(amplitude, arguments.cosine, arguments.sine);
        return {sums.even + sums.odd, sums.here, sums.even - sums.odd};
    }
    [[nodiscard]] ThreeDays Sines(const Column& amplitude, const Arguments& arguments) const
    {
        const Sums sums = Sum(amplitude, arguments.sine, arguments.cosine);
        return {sums.even - sums.odd, sums.here, sums.even + sums.odd};
    }
    // The series of cosines with its own amplitudes.
    [[nodiscard]] ThreeDays Evaluate(double days) const { return Cosines(m_amplitude, ArgumentsAt(days)); }

private:
    struct Sums
    {
        double here = 0.0;
        double even = 0.0;
        double odd = 0.0;
    };

    // In two strands, since the compiler may not reorder a sum.
    [[nodiscard]] Sums Sum(const Column& amplitude, const Column& own, const Column& other) const
    {
        Sums sums[2];
        for (std::size_t i = 0; i < Count; ++i) {
            Sums& strand = sums[i % 2];
            const double term = amplitude[i] * own[i];
            strand.here += term;
            strand.even += term * m_cosineOfStep[i];
            strand.odd += amplitude[i] * other[i] * m_sineOfStep[i];
        }
        return {sums[0].here + sums[1].here, sums[0].even + sums[1].even, sums[0].odd + sums[1].odd};
    }

    Column m_amplitude{};
    Column m_phase{};     // turns
    Column m_frequency{}; // turns per day
    Column m_sineOfStep{};
    Column m_cosineOfStep{};
};

} // namespace calculation
