// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace beacond {

class Columns;
struct ImportReport;

enum class DumpKind { Other, Places, Divisions, AlternateNames, PostalCodes };

/// The operator's own files of GeoNames: cities500.txt and its kin, admin1CodesASCII.txt and admin2Codes.txt,
/// alternateNamesV2.txt, postal codes. The columns tell the kind of a table; the names of the files don't
/// matter.
class Dumps final
{
public:
    /// Throws PlacesError if a file can't be read or has no table of a known kind.
    Dumps(const std::vector<std::filesystem::path>& files, ImportReport& report);

    /// Calls `row` for each row of the tables of that kind, in the order of the files, and counts the rows in
    /// the report. Throws PlacesError if a file can't be read.
    void ForEach(DumpKind kind, const std::function<void(const Columns&)>& row) const;

private:
    struct File
    {
        std::filesystem::path path;
        std::vector<DumpKind> tables; ///< the kind of each table in it
        std::size_t firstTable;       ///< index in the report
    };

    [[nodiscard]] std::vector<DumpKind> KindsOf(const std::filesystem::path& path) const;

    std::vector<File> m_files;
    ImportReport& m_report;
};

} // namespace beacond
