// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputParts.h"
#include "places/Fold.h"
#include "places/ImportReport.h"
#include "places/Places.h"
#include "places/PlacesError.h"
#include "places/PlacesFile.h"
#include "places/Tokens.h"
#include "places/ZoneOffset.h"
#include "server/places/SmallTables.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace beacond;

namespace {

void CheckPlace(const Places& places, std::string_view id)
{
    const std::optional<Place> place = places.ByAtlasId(id);
    Demand(place.has_value(), "a place that is listed can be fetched");
    Demand(place->atlasId == id && IsToken(id), "a place has the identifier under which it is listed");
    Demand(IsPlaceKey(place->key), "the program can keep the place");
    Demand(std::abs(place->latitude) <= 90.0 && std::abs(place->longitude) <= 180.0 &&
               IsTimeZone(place->timeZone),
           "the program can compute with the place");
    Demand(!place->city.empty() && !place->state.empty(), "a place has a name and a state");
}

void CheckList(const Places& places, std::string_view state, const std::string& letters)
{
    constexpr std::size_t kMost = 1000;
    const std::vector<Match> matches = places.Search(state, letters, kMost);
    Demand(matches.size() == std::min(places.Count(state, letters), kMost),
           "a search finds the places that it counts");
    std::set<std::string> cities;
    for (const Match& match : matches) {
        Demand(cities.insert(match.city).second, "places of a list differ in their text");
        CheckPlace(places, match.atlasId);
    }
}

void CheckFile(const TemporaryFolder& folder, const ImportReport& report)
{
    Demand(report.places > 0, "a file has a place");
    const Places places(folder / "places.bin");
    const PlacesFile file(folder / "places.bin");
    Demand(file.Ids().size() == report.places && places.States().size() == report.scopes,
           "the report counts what the file holds");
    for (const State& state : places.States()) {
        Demand(!state.name.empty() && IsToken(state.id), "a state can be asked for");
        for (const layout::Place& place : file.Places()) {
            CheckList(places, state.id, Fold(file.TextAt(place.name)));
        }
    }
    for (const layout::Code& code : file.Codes()) {
        const std::vector<Match> matches = places.ByZip(file.TextAt(code.code));
        Demand(!matches.empty(), "a postal code finds a place");
        std::set<std::string> listed;
        for (const Match& match : matches) {
            Demand(listed.insert(match.atlasId).second, "a code lists a place once");
            CheckPlace(places, match.atlasId);
        }
    }
}

std::vector<std::string> KeysOf(const TemporaryFolder& folder)
{
    const Places places(folder / "places.bin");
    const PlacesFile file(folder / "places.bin");
    std::vector<std::string> keys;
    for (const layout::Id& id : file.Ids()) {
        keys.push_back(places.ByAtlasId("XX-G" + std::to_string(id.id))->key);
    }
    return keys;
}

/// Writes the files of the operator.
std::vector<std::filesystem::path> DumpsIn(const TemporaryFolder& folder, InputParts& parts)
{
    std::vector<std::filesystem::path> dumps;
    for (const char* const name : {"first", "second", "third"}) {
        if (const std::string content = parts.Next(); !content.empty()) {
            dumps.push_back(folder / name);
            Write(dumps.back(), content);
        }
    }
    return dumps;
}

void CheckDumps(const SmallTables& tables, const TemporaryFolder& folder, InputParts& parts)
{
    const std::vector<std::filesystem::path> dumps = DumpsIn(folder, parts);
    if (dumps.empty()) {
        return;
    }
    const std::vector<std::string> before = KeysOf(folder);
    const std::string file = Read(folder / "places.bin");
    try {
        CheckFile(folder, tables.Import(folder, dumps));
    } catch (const PlacesError&) {
        Demand(Read(folder / "places.bin") == file, "a failed import leaves the file");
        return;
    }
    const std::vector<std::string> after = KeysOf(folder);
    Demand(std::all_of(before.begin(), before.end(),
                       [&after](const std::string& key) {
                           return std::find(after.begin(), after.end(), key) != after.end();
                       }),
           "a place keeps its key");
}

} // namespace

// The tables of an import: places, divisions, postal codes, regions, corrections, shipped places; then up to
// three files of the operator, plain or packed.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    InputParts parts(data, size);
    SmallTables tables;
    for (std::string* const table : {&tables.places, &tables.divisions, &tables.postal, &tables.regions,
                                     &tables.overlay, &tables.shipped}) {
        *table = parts.Next();
    }
    const TemporaryFolder folder;
    try {
        CheckFile(folder, tables.Import(folder));
        CheckDumps(tables, folder, parts);
    } catch (const PlacesError&) { // no usable place
    }
    return 0;
}
