// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A comma-separated file of the folder reference/, its heading left out.
class ReferenceTable final
{
public:
    class Row final
    {
    public:
        Row(std::string line, std::vector<std::string> fields);

        [[nodiscard]] const std::string& Text(std::size_t column) const { return m_fields.at(column); }
        [[nodiscard]] std::int16_t Whole(std::size_t column) const;
        [[nodiscard]] double Number(std::size_t column) const;
        // As it stands in the file, for the message of a failure.
        [[nodiscard]] const std::string& Line() const { return m_line; }

    private:
        std::string m_line;
        std::vector<std::string> m_fields;
    };

    // Throws std::runtime_error when the file is missing.
    explicit ReferenceTable(const std::string& fileName);

    [[nodiscard]] const std::vector<Row>& Rows() const& { return m_rows; }
    // A table that is gone at the end of the line would take its rows along.
    const std::vector<Row>& Rows() const&& = delete;

private:
    std::vector<Row> m_rows;
};
