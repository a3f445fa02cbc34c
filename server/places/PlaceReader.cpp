// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/PlaceReader.h"

#include "places/Distinction.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"
#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/PlacesError.h"
#include "places/Romanization.h"
#include "places/TableFile.h"
#include "places/Tokens.h"
#include "places/ZoneOffset.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

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
    kClass,
    kFeature,
    kCountry,
    kFirstDivision = 10,
    kSecondDivision,
    kPopulation = 14,
    kElevation,
    kSurface, ///< height in the terrain model, -9999 where it has no data
    kZone,
    kColumns = 19
};
constexpr std::int16_t kNoHeight = -9999;
// The memory of a small machine: the table of all features of the earth has twelve million rows.
constexpr std::size_t kMostPlaces = 1'000'000;

bool IsPopulated(const Columns& row)
{
    // Historical, abandoned and destroyed places, and former capitals.
    static constexpr std::string_view kFormer[] = {"PPLH", "PPLQ", "PPLW", "PPLCH"};
    return (row[kClass].empty() || row[kClass] == "P") &&
           std::find(std::begin(kFormer), std::end(kFormer), row[kFeature]) == std::end(kFormer);
}

std::optional<std::int16_t> ElevationOf(const Columns& row)
{
    for (const Column column : {kElevation, kSurface}) {
        const auto metres = NumberIn<std::int16_t>(row[column]);
        if (metres && *metres != kNoHeight)
            return metres;
    }
    return std::nullopt;
}

std::uint32_t PopulationOf(const Columns& row)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(NumberIn<std::uint64_t>(row[kPopulation]).value_or(0), most));
}

std::string_view CountryOf(const GazetteerPlace& place)
{
    return std::string_view(place.firstDivision).substr(0, 2);
}

/// A list can't distinguish places of one name whose displayed coordinates are equal.
std::string PointOf(const GazetteerPlace& place)
{
    return std::string(CountryOf(place)) + Fold(place.name) + CoordinateText(place.latitude, "NS") +
           CoordinateText(place.longitude, "EW");
}

} // namespace

PlaceReader::PlaceReader(Gazetteer& gazetteer, ImportReport& report)
    : m_gazetteer(gazetteer)
    , m_report(report)
{
    for (std::size_t i = 0; i < gazetteer.regions.size(); ++i)
        m_regions.emplace(gazetteer.regions[i].code, i);
}

void PlaceReader::Add(const Columns& row)
{
    if (const char* const fault = Take(row, false))
        m_report.Skip(fault, row);
}

void PlaceReader::AddOrReplace(const Columns& row)
{
    const bool isPopulated = row.size() != kColumns || IsPopulated(row);
    if (const char* const fault = isPopulated ? Take(row, true) : "place: not a populated place")
        m_report.Skip(fault, row);
}

/// The reason why the row is skipped, or null.
const char* PlaceReader::Take(const Columns& row, bool mayReplace)
{
    GazetteerPlace place;
    if (const char* const fault = Parse(row, place))
        return fault;
    const auto known = m_ids.find(place.id);
    if (known != m_ids.end() && !mayReplace)
        return "place: its id is there already";
    const auto [point, isNew] = m_points.try_emplace(PointOf(place), place.id);
    if (!isNew && point->second != place.id)
        return "place: a place of that name at the same point is there already";
    if (known != m_ids.end()) {
        Replace(m_gazetteer.places[known->second], std::move(place));
        return nullptr;
    }
    if (m_gazetteer.places.size() >= kMostPlaces)
        throw PlacesError(row.Position() + ": more than " + std::to_string(kMostPlaces) + " places");
    m_ids.emplace(place.id, m_gazetteer.places.size());
    m_gazetteer.places.push_back(std::move(place));
    return nullptr;
}

/// The reason why the row is invalid, or null.
const char* PlaceReader::Parse(const Columns& row, GazetteerPlace& place)
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
    if (!IsText(row[kName]) || Fold(row[kName]).empty() || !(row[kAliases].empty() || IsText(row[kAliases])))
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
    place.id = *id;
    place.name = CommonSpelling(row[kName], country);
    place.aliases = std::string(row[kAsciiName]) + "," + std::string(row[kAliases]);
    if (Fold(place.name) != Fold(row[kName]))
        place.aliases.append(",").append(row[kName]);
    place.latitude = *latitude;
    place.longitude = *longitude;
    place.population = PopulationOf(row);
    place.elevation = ElevationOf(row);
    place.zone = row[kZone];
    place.region = region->second;
    return nullptr;
}

void PlaceReader::Replace(GazetteerPlace& old, GazetteerPlace place)
{
    if (const std::string point = PointOf(old); point != PointOf(place))
        m_points.erase(point);
    if (place.name != old.name)
        place.aliases.append(",").append(old.name);
    // A few rows of GeoNames have no region.
    if (place.firstDivision.ends_with('.') && CountryOf(place) == CountryOf(old)) {
        place.firstDivision = old.firstDivision;
        place.secondDivision = old.secondDivision;
        place.region = old.region;
    }
    old = std::move(place);
}

bool PlaceReader::IsKnownZone(std::string_view name)
{
    const auto [zone, isNew] = m_zones.try_emplace(std::string(name), false);
    if (isNew)
        zone->second = IsTimeZone(name);
    return zone->second;
}

} // namespace beacond
