// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Dumps.h"

#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/PlacesError.h"
#include "places/TableFile.h"

#include <algorithm>
#include <cstdint>

namespace beacond {

namespace {

// A table may begin with damaged rows.
constexpr int kRowsToKnowAKind = 100;

bool IsNumber(std::string_view text)
{
    return NumberIn<std::uint32_t>(text).has_value();
}

DumpKind KindOf(const Columns& row)
{
    switch (row.size()) {
    case 19:
        return IsNumber(row[0]) ? DumpKind::Places : DumpKind::Other;
    case 12:
        return row[0].size() == 2 ? DumpKind::PostalCodes : DumpKind::Other;
    case 8: // the older alternateNames.txt
    case 10:
        return IsNumber(row[0]) && IsNumber(row[1]) ? DumpKind::AlternateNames : DumpKind::Other;
    case 2:
    case 4: // not iso-languagecodes.txt, which comes in one archive with the alternate names
        return row[0].size() > 3 && row[0][2] == '.' ? DumpKind::Divisions : DumpKind::Other;
    default:
        return DumpKind::Other;
    }
}

DumpKind KindOfTable(TableFile& file)
{
    DumpKind kind = DumpKind::Other;
    for (int i = 0; i < kRowsToKnowAKind && kind == DumpKind::Other; ++i) {
        const Columns* const row = file.NextRow();
        if (!row)
            break;
        kind = KindOf(*row);
    }
    return kind;
}

const char* NameOf(DumpKind kind)
{
    switch (kind) {
    case DumpKind::Places:
        return "places";
    case DumpKind::Divisions:
        return "regions";
    case DumpKind::AlternateNames:
        return "alternate names";
    case DumpKind::PostalCodes:
        return "postal codes";
    case DumpKind::Other:
        break;
    }
    return "not a table of GeoNames, ignored";
}

} // namespace

Dumps::Dumps(const std::vector<std::filesystem::path>& files, ImportReport& report)
    : m_report(report)
{
    for (const std::filesystem::path& path : files) {
        const std::size_t firstTable = m_report.tables.size();
        m_files.push_back({path, KindsOf(path), firstTable});
    }
}

std::vector<DumpKind> Dumps::KindsOf(const std::filesystem::path& path) const
{
    std::vector<DumpKind> kinds;
    TableFile file(path);
    while (file.NextTable()) {
        kinds.push_back(KindOfTable(file));
        m_report.tables.push_back({file.TableName(), NameOf(kinds.back())});
    }
    if (std::all_of(kinds.begin(), kinds.end(), [](DumpKind kind) { return kind == DumpKind::Other; }))
        throw PlacesError(path.string() + ": not a table of GeoNames");
    return kinds;
}

void Dumps::ForEach(DumpKind kind, const std::function<void(const Columns&)>& row) const
{
    for (const File& file : m_files) {
        if (std::find(file.tables.begin(), file.tables.end(), kind) == file.tables.end())
            continue;
        TableFile tables(file.path);
        for (std::size_t i = 0; i < file.tables.size() && tables.NextTable(); ++i) {
            while (const Columns* const columns = file.tables[i] == kind ? tables.NextRow() : nullptr) {
                ++m_report.tables[file.firstTable + i].rows;
                row(*columns);
            }
        }
    }
}

} // namespace beacond
