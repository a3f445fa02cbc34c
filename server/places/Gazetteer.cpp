// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Gazetteer.h"

#include "places/Distinction.h"
#include "places/Fold.h"
#include "places/ImportReport.h"
#include "places/Importer.h"
#include "places/Numbers.h"
#include "places/Overlay.h"
#include "places/Romanization.h"
#include "places/TextTable.h"
#include "places/Tokens.h"
#include "places/ZoneOffset.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <limits>
#include <unordered_set>

namespace beacond {

namespace {

// Columns of GeoNames' tables of places.
enum Column : std::size_t {
    kId,
    kName,
    kAsciiName,
    kAliases,
    kLatitude,
    kLongitude,
    kCountry = 8,
    kFirstDivision = 10,
    kSecondDivision,
    kPopulation = 14,
    kElevation,
    kSurface, ///< height in the terrain model, -9999 where it has no data
    kZone,
    kColumns = 19
};
constexpr std::int16_t kNoHeight = -9999;

bool IsText(std::string_view text)
{
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    if (text.empty() || std::any_of(text.begin(), text.end(), isControl))
        return false;
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<std::int32_t>(text.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

std::optional<std::int16_t> ElevationOf(TextTable::Columns row)
{
    for (const Column column : {kElevation, kSurface}) {
        const auto metres = NumberIn<std::int16_t>(row[column]);
        if (metres && *metres != kNoHeight)
            return metres;
    }
    return std::nullopt;
}

/// Reads rows of places, each checked.
class PlaceReader
{
public:
    PlaceReader(Gazetteer& gazetteer, ImportReport& report)
        : m_gazetteer(gazetteer)
        , m_report(report)
    {
        for (std::size_t i = 0; i < gazetteer.regions.size(); ++i)
            m_regions.emplace(gazetteer.regions[i].code, i);
    }

    void Read(TextTable::Columns row)
    {
        GazetteerPlace place;
        if (const char* fault = Take(row, place))
            m_report.Skip(fault);
        else
            m_gazetteer.places.push_back(std::move(place));
    }

private:
    /// The reason why the row is invalid, or null.
    const char* Take(TextTable::Columns row, GazetteerPlace& place)
    {
        if (row.size() != kColumns)
            return "place: not 19 columns";
        const auto id = NumberIn<std::uint32_t>(row[kId]);
        if (!id || *id == 0)
            return "place: its id is not a number above 0";
        const auto latitude = UnitsIn(row[kLatitude], 90.0);
        const auto longitude = UnitsIn(row[kLongitude], 180.0);
        if (!latitude || !longitude)
            return "place: latitude or longitude out of range";
        if (!IsText(row[kName]) || Fold(row[kName]).empty() ||
            !(row[kAliases].empty() || IsText(row[kAliases])))
            return "place: its name is not valid text";
        if (!IsKnownZone(row[kZone]))
            return "place: unknown time zone";
        const std::string country(row[kCountry]);
        place.firstDivision = country + "." + std::string(row[kFirstDivision]);
        place.secondDivision = place.firstDivision + "." + std::string(row[kSecondDivision]);
        auto region = m_regions.find(place.firstDivision);
        if (region == m_regions.end())
            region = m_regions.find(country);
        if (region == m_regions.end())
            return "place: unknown country";
        if (!m_ids.insert(*id).second)
            return "place: its id is there already";
        if (!IsNew(country, row[kName], *latitude, *longitude))
            return "place: a place of that name at the same point is there already";
        place.id = *id;
        place.name = CommonSpelling(row[kName], country);
        place.aliases = std::string(row[kAsciiName]) + "," + std::string(row[kAliases]);
        place.latitude = *latitude;
        place.longitude = *longitude;
        place.population = PopulationOf(row);
        place.elevation = ElevationOf(row);
        place.zone = row[kZone];
        place.region = region->second;
        return nullptr;
    }

    /// A list can't distinguish places of one name whose displayed coordinates are equal.
    bool IsNew(const std::string& country, std::string_view name, std::int32_t latitude,
               std::int32_t longitude)
    {
        return m_points
            .insert(country + Fold(name) + CoordinateText(latitude, "NS") + CoordinateText(longitude, "EW"))
            .second;
    }

    static std::uint32_t PopulationOf(TextTable::Columns row)
    {
        constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
        return static_cast<std::uint32_t>(
            std::min(NumberIn<std::uint64_t>(row[kPopulation]).value_or(0), most));
    }

    bool IsKnownZone(std::string_view name)
    {
        const auto [zone, isNew] = m_zones.try_emplace(std::string(name), false);
        if (isNew)
            zone->second = IsTimeZone(name);
        return zone->second;
    }

    Gazetteer& m_gazetteer;
    ImportReport& m_report;
    std::unordered_map<std::string, std::size_t> m_regions;
    std::unordered_map<std::string, bool> m_zones;
    std::unordered_set<std::uint32_t> m_ids;
    std::unordered_set<std::string> m_points;
};

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
    TextTable(path).ForEach([&](TextTable::Columns row) {
        if (row.size() == 3 && IsRegion(row[0], row[1]) && IsText(row[2]))
            regions.push_back({std::string(row[1]), std::string(row[0]), std::string(row[2])});
        else
            report.Skip("region: not id, code and name");
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

Gazetteer ReadGazetteer(const ImportSources& sources, ImportReport& report)
{
    Gazetteer gazetteer;
    gazetteer.regions = ReadRegions(sources.regions, report);
    TextTable(sources.divisions).ForEach([&](TextTable::Columns row) {
        if (row.size() >= 2 && IsText(row[1]))
            gazetteer.divisions.emplace(row[0], CommonSpelling(row[1], row[0].substr(0, 2)));
        else
            report.Skip("division: not code and name");
    });
    PlaceReader reader(gazetteer, report);
    TextTable(sources.places).ForEach([&reader](TextTable::Columns row) { reader.Read(row); });
    ApplyOverlay(TextTable(sources.overlay), gazetteer, report);
    ApplyShipped(TextTable(sources.shipped), gazetteer, report);
    return gazetteer;
}

} // namespace beacond
