// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// A row of a comma-separated file of the folder reference/.
struct ReferenceRow
{
    std::string line; // the line of the file, for failure messages
    std::vector<std::string> fields;

    [[nodiscard]] const std::string& Text(std::size_t column) const { return fields.at(column); }
    [[nodiscard]] std::int16_t Whole(std::size_t column) const
    {
        return static_cast<std::int16_t>(std::stoi(Text(column)));
    }
    [[nodiscard]] double Number(std::size_t column) const { return std::stod(Text(column)); }
};

// The rows of the file without its heading. Throws std::runtime_error when the file is missing.
[[nodiscard]] inline std::vector<ReferenceRow> ReferenceTable(const std::string& fileName)
{
    std::ifstream file(std::string(DUSKBEACON_REFERENCE_FOLDER "/") + fileName);
    std::string line;
    if (!std::getline(file, line)) {
        throw std::runtime_error("no reference table " + fileName);
    }
    std::vector<ReferenceRow> rows;
    while (std::getline(file, line)) {
        ReferenceRow& row = rows.emplace_back(line, std::vector<std::string>{});
        std::istringstream stream(line);
        for (std::string field; std::getline(stream, field, ',');) {
            row.fields.push_back(field);
        }
    }
    return rows;
}

// The largest error, its row, and the root mean square of all errors.
class ErrorStatistics final
{
public:
    void Add(double error, const std::string& row = {})
    {
        // An error that is not a number counts as the largest.
        const double size = std::isfinite(error) ? std::abs(error) : std::numeric_limits<double>::max();
        ++m_count;
        m_squares += error * error;
        if (size >= m_largest) {
            m_largest = size;
            m_worstRow = row;
        }
    }

    [[nodiscard]] int Count() const { return m_count; }
    [[nodiscard]] double Largest() const { return m_largest; }
    [[nodiscard]] double RootMeanSquare() const
    {
        return m_count == 0 ? 0.0 : std::sqrt(m_squares / m_count);
    }
    [[nodiscard]] const std::string& WorstRow() const { return m_worstRow; }
    void Print(const std::string& subject, const std::string& unit) const
    {
        std::printf("%s: %d values, largest error %.4f %s, rms %.4f %s\n", subject.c_str(), m_count,
                    m_largest, unit.c_str(), RootMeanSquare(), unit.c_str());
    }

private:
    int m_count = 0;
    double m_largest = 0.0;
    double m_squares = 0.0;
    std::string m_worstRow;
};
