// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Overlay.h"

#include "places/Gazetteer.h"
#include "places/ImportReport.h"
#include "places/Numbers.h"
#include "places/TextTable.h"
#include "places/Tokens.h"
#include "places/ZoneOffset.h"
#include "support/Ascii.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace beacond {

namespace {

using PlacesById = std::unordered_map<std::uint32_t, std::size_t>;

PlacesById IndexOf(const Gazetteer& gazetteer)
{
    PlacesById index;
    for (std::size_t i = 0; i < gazetteer.places.size(); ++i)
        index.emplace(gazetteer.places[i].id, i);
    return index;
}

void Append(std::string& names, std::string_view name)
{
    names.append(",").append(name);
}

void Rename(GazetteerPlace& place, std::string_view name)
{
    if (place.name == name)
        return;
    Append(place.spellings, place.name);
    place.name = name;
}

/// Whether the action is one on a single place, with a valid value.
bool Correct(GazetteerPlace& place, std::string_view action, std::string_view value)
{
    if (action == "hidden") {
        place.hidden = true;
        return true;
    }
    if (!IsText(value))
        return false;
    if (action == "name") {
        Rename(place, value);
        return true;
    }
    if (action == "spelling" || action == "alias") {
        Append(action == "alias" ? place.aliases : place.spellings, value);
        return true;
    }
    if (action == "zone" && IsTimeZone(value)) {
        place.zone = value;
        return true;
    }
    if (action == "elevation") {
        place.elevation = NumberIn<std::int16_t>(value);
        return place.elevation.has_value();
    }
    if (action == "population") {
        const auto people = NumberIn<std::uint32_t>(value);
        place.population = people.value_or(place.population);
        return people.has_value();
    }
    return false;
}

bool IsIn(const GazetteerPlace& place, std::string_view code)
{
    return place.firstDivision.starts_with(code) &&
           (place.firstDivision.size() == code.size() || place.firstDivision[code.size()] == '.');
}

/// Sets the zone of each place of a region. Returns whether there is one.
bool SetZoneOfRegion(Gazetteer& gazetteer, std::string_view code, std::string_view zone)
{
    bool found = false;
    for (GazetteerPlace& place : gazetteer.places) {
        if (IsIn(place, code)) {
            place.zone = zone;
            found = true;
        }
    }
    return found;
}

/// Adds a copy of each place that is `subject` or lies in it to a region whose country doesn't list it yet.
/// Returns the number of copies.
std::size_t ListAgain(Gazetteer& gazetteer, std::string_view subject, std::string_view regionId)
{
    const auto region = std::find_if(gazetteer.regions.begin(), gazetteer.regions.end(),
                                     [&](const GazetteerRegion& r) { return r.id == regionId; });
    if (region == gazetteer.regions.end() || subject.empty())
        return 0;
    std::unordered_set<std::uint32_t> listed;
    for (const GazetteerPlace& place : gazetteer.places) {
        if (gazetteer.regions[place.region].Country() == region->Country())
            listed.insert(place.id);
    }
    const auto id = NumberIn<std::uint32_t>(subject);
    std::vector<GazetteerPlace> copies;
    for (const GazetteerPlace& place : gazetteer.places) {
        if (place.isCopy || listed.contains(place.id) || !(id ? place.id == *id : IsIn(place, subject)))
            continue;
        copies.push_back(place);
        copies.back().isCopy = true;
        copies.back().region = static_cast<std::size_t>(region - gazetteer.regions.begin());
    }
    gazetteer.places.insert(gazetteer.places.end(), copies.begin(), copies.end());
    return copies.size();
}

} // namespace

void ApplyOverlay(const TextTable& overlay, Gazetteer& gazetteer, ImportReport& report)
{
    struct Listing
    {
        std::string subject;
        std::string region;
    };
    std::vector<Listing> listings;
    const PlacesById index = IndexOf(gazetteer);
    overlay.ForEach([&](const Columns& row) {
        if (row[0] == kAddedPlace || row[0] == kAddedPostalCode)
            return;
        const std::string_view value = row.size() > 2 ? row[2] : std::string_view();
        if (row.size() > 1 && row[0] == "listed") {
            listings.push_back({std::string(row[1]), std::string(value)});
            return;
        }
        if (row.size() > 1 && row[0] == "zone" && !row[1].empty() && !IsDigit(row[1].front())) {
            if (!IsTimeZone(value) || !SetZoneOfRegion(gazetteer, row[1], value))
                report.Skip("overlay: no such zone or region", row);
            return;
        }
        const auto id = row.size() > 1 ? NumberIn<std::uint32_t>(row[1]) : std::nullopt;
        const auto place = id ? index.find(*id) : index.end();
        if (place == index.end())
            report.Skip("overlay: no such place", row);
        else if (!Correct(gazetteer.places[place->second], row[0], value))
            report.Skip("overlay: unknown action or wrong value", row);
    });
    // Copy last, so that the copies have the corrections.
    for (const Listing& listing : listings) {
        if (ListAgain(gazetteer, listing.subject, listing.region) == 0)
            report.Skip("overlay: no such place or region, or its country lists it already");
    }
}

void ApplyShipped(const TextTable& shipped, Gazetteer& gazetteer, ImportReport& report)
{
    std::unordered_multimap<std::uint32_t, std::size_t> index;
    for (std::size_t i = 0; i < gazetteer.places.size(); ++i)
        index.emplace(gazetteer.places[i].id, i);
    std::unordered_set<std::string> keys;
    shipped.ForEach([&](const Columns& row) {
        const auto id = row.size() == 5 ? NumberIn<std::uint32_t>(row[2]) : std::nullopt;
        if (!id || !IsPlaceKey(row[0]) || !IsToken(row[1]) || !IsText(row[3]) || !IsText(row[4])) {
            report.Skip("shipped: not key, identifier, number, city and state", row);
            return;
        }
        const auto [first, last] = index.equal_range(*id);
        if (first == last) {
            report.Skip("shipped: no such place", row);
            return;
        }
        if (!keys.emplace(row[0]).second) {
            report.Skip("shipped: its key is there already", row);
            return;
        }
        for (auto place = first; place != last; ++place)
            Rename(gazetteer.places[place->second], row[3]);
        gazetteer.shipped.push_back({std::string(row[0]), std::string(row[1]), *id, std::string(row[4])});
    });
}

} // namespace beacond
