// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/ReferenceTable.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

ReferenceTable::Row::Row(std::string line, std::vector<std::string> fields)
    : m_line(std::move(line))
    , m_fields(std::move(fields))
{
}

std::int16_t ReferenceTable::Row::Whole(std::size_t column) const
{
    return static_cast<std::int16_t>(std::stoi(Text(column)));
}

double ReferenceTable::Row::Number(std::size_t column) const
{
    return std::stod(Text(column));
}

ReferenceTable::ReferenceTable(const std::string& fileName)
{
    std::ifstream file(std::string(DUSKBEACON_REFERENCE_FOLDER "/") + fileName);
    std::string line;
    if (!std::getline(file, line)) {
        throw std::runtime_error("no reference table " + fileName);
    }
    while (std::getline(file, line)) {
        std::vector<std::string> fields;
        std::istringstream stream(line);
        for (std::string field; std::getline(stream, field, ',');) {
            fields.push_back(field);
        }
        m_rows.emplace_back(line, std::move(fields));
    }
}
