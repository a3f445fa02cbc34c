// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/TableFile.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace beacond {

struct SkippedRows
{
    std::size_t rows = 0;
    std::string first; ///< position of the first one; may be empty
};

/// A table of the operator.
struct ImportedTable
{
    std::string name; ///< "CA_full.csv.zip: CA_full.txt"
    std::string kind; ///< "postal codes"
    std::size_t rows = 0;
};

/// The postal codes of a country that an import has replaced.
struct ReplacedCodes
{
    std::size_t packed = 0;   ///< rows of the packed table
    std::size_t imported = 0; ///< rows of the operator

    bool operator==(const ReplacedCodes&) const = default;
};

/// The outcome of an import, for the operator.
struct ImportReport
{
    std::size_t places = 0;
    std::size_t names = 0;  ///< folded names and words of names that a search finds
    std::size_t codes = 0;  ///< postal codes
    std::size_t scopes = 0; ///< rows of the list of countries and states
    std::vector<ImportedTable> tables;
    std::map<std::string, ReplacedCodes> replacedCodes;      ///< by the name of the country
    std::map<std::string, SkippedRows, std::less<>> skipped; ///< by reason

    void Skip(const char* reason) { ++skipped[reason].rows; }
    void Skip(const char* reason, const Columns& row)
    {
        SkippedRows& rows = skipped[reason];
        if (rows.rows++ == 0)
            rows.first = row.Position();
    }
};

} // namespace beacond
