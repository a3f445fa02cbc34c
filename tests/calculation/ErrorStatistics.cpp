// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/ErrorStatistics.h"

#include <cmath>
#include <cstdio>
#include <limits>

void ErrorStatistics::Add(double error, const std::string& row)
{
    // What is no number is worse than any.
    const double size = std::isfinite(error) ? std::abs(error) : std::numeric_limits<double>::max();
    ++m_count;
    m_squares += error * error;
    if (size >= m_largest) {
        m_largest = size;
        m_worstRow = row;
    }
}

double ErrorStatistics::RootMeanSquare() const
{
    return m_count == 0 ? 0.0 : std::sqrt(m_squares / m_count);
}

void ErrorStatistics::Print(const std::string& subject, const std::string& unit) const
{
    std::printf("%s: %d values, largest error %.4f %s, rms %.4f %s\n", subject.c_str(), m_count, m_largest,
                unit.c_str(), RootMeanSquare(), unit.c_str());
}
