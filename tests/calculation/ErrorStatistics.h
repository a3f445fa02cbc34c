// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

// The largest and the root mean square of the errors met, and the row that has the largest.
class ErrorStatistics final
{
public:
    void Add(double error, const std::string& row = {});

    [[nodiscard]] int Count() const { return m_count; }
    [[nodiscard]] double Largest() const { return m_largest; }
    [[nodiscard]] double RootMeanSquare() const;
    [[nodiscard]] const std::string& WorstRow() const { return m_worstRow; }
    void Print(const std::string& subject, const std::string& unit) const;

private:
    int m_count = 0;
    double m_largest = 0.0;
    double m_squares = 0.0;
    std::string m_worstRow;
};
