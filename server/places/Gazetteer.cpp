// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Gazetteer.h"

#include "places/AlternateNames.h"
#include "places/Doubles.h"
#include "places/Dumps.h"
#include "places/ImportReport.h"
#include "places/Importer.h"
#include "places/Overlay.h"
#include "places/PlaceReader.h"
#include "places/PlacesError.h"
#include "places/Romanization.h"
#include "places/TextTable.h"
#include "places/Tokens.h"

#include <algorithm>
#include <unordered_set>

namespace beacond {

namespace {

// The memory of a small machine; GeoNames has 50,000.
constexpr std::size_t kMostDivisions = 1'000'000;

/// The id and code of a country ("US") or of a state ("US-TX", "US.TX"). A search recognises a state by the
/// hyphen.
bool IsRegion(std::string_view id, std::string_view code)
{
    const bool isCountry = code.size() == 2;
    return IsToken(id) && IsToken(code) && (isCountry || (code.size() > 3 && code[2] == '.')) &&
           isCountry == (id.find('-') == std::string_view::npos);
}

/// Drops the states whose country has no row of its own.
void DropStrayStates(std::vector<GazetteerRegion>& regions, ImportReport& report)
{
    std::unordered_set<std::string> countries;
    for (const GazetteerRegion& region : regions)
        if (!region.IsState())
            countries.insert(region.code);
    std::erase_if(regions, [&](const GazetteerRegion& region) {
        const bool isStray = !countries.contains(std::string(region.Country()));
        if (isStray)
            report.Skip("region: a state without its country");
        return isStray;
    });
}

std::vector<GazetteerRegion> ReadRegions(const std::filesystem::path& path, ImportReport& report)
{
    std::vector<GazetteerRegion> regions;
    TextTable(path).ForEach([&](const Columns& row) {
        if (row.size() == 3 && IsRegion(row[0], row[1]) && IsText(row[2]))
            regions.push_back({std::string(row[1]), std::string(row[0]), std::string(row[2])});
        else
            report.Skip("region: not id, code and name", row);
    });
    DropStrayStates(regions, report);
    std::sort(regions.begin(), regions.end(), [](const auto& a, const auto& b) { return a.code < b.code; });
    return regions;
}

} // namespace

std::vector<std::string_view> SplitNames(std::string_view names)
{
    std::vector<std::string_view> parts;
    for (std::size_t begin = 0; begin < names.size();) {
        const std::size_t end = std::min(names.find(',', begin), names.size());
        if (end > begin)
            parts.push_back(names.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

Gazetteer ReadGazetteer(const ImportSources& sources, const Dumps& dumps, ImportReport& report)
{
    Gazetteer gazetteer;
    gazetteer.regions = ReadRegions(sources.regions, report);
    const auto addDivision = [&](const Columns& row) {
        if (gazetteer.divisions.size() >= kMostDivisions)
            throw PlacesError(row.Position() + ": more than a million regions");
        if (row.size() >= 2 && IsText(row[1]))
            gazetteer.divisions.insert_or_assign(std::string(row[0]),
                                                 CommonSpelling(row[1], row[0].substr(0, 2)));
        else
            report.Skip("division: not code and name", row);
    };
    TextTable(sources.divisions).ForEach(addDivision);
    dumps.ForEach(DumpKind::Divisions, addDivision);
    PlaceReader reader(gazetteer, report);
    TextTable(sources.places).ForEach([&reader](const Columns& row) { reader.Add(row); });
    TextTable(sources.overlay).ForEach([&reader](const Columns& row) {
        if (row[0] == kAddedPlace)
            reader.Add(row.WithoutFirst());
    });
    dumps.ForEach(DumpKind::Places, [&reader](const Columns& row) { reader.AddOrReplace(row); });
    AddAlternateNames(dumps, gazetteer, report);
    ApplyOverlay(TextTable(sources.overlay), gazetteer, report);
    ApplyShipped(TextTable(sources.shipped), gazetteer, report);
    HideDoubles(gazetteer);
    return gazetteer;
}

} // namespace beacond
