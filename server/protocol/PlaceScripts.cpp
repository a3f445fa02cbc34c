// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/PlaceScripts.h"

#include "places/Places.h"
#include "places/ZoneOffset.h"
#include "protocol/Reply.h"
#include "support/Ascii.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace beacond {

namespace {

// Above this number the program asks its user before it fetches the list.
constexpr std::size_t kMostWithoutQuestion = 200;
constexpr std::size_t kMostCities = 1'000;
constexpr std::size_t kLargestReply = 256UL * 1024;

std::string Formatted(const char* format, double number)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

// "39.83 E"
std::string Words(double degrees, char positive, char negative)
{
    return Formatted("%.2f ", std::abs(degrees)) + (degrees < 0.0 ? negative : positive);
}

template <typename Cities>
Response CityList(const Cities& cities)
{
    XmlReply reply;
    for (const auto& city : cities) {
        if (reply.Size() > kLargestReply - 1024) {
            break;
        }
        reply.Child().Attribute("city", city.city).Attribute("atlas_id", city.atlasId);
    }
    return ScriptReply(std::move(reply));
}

// Identifiers of states are those of ISO 3166, in capitals.
std::string StateId(const Query& query)
{
    std::string id = TrimmedValue(query, "state_id");
    std::transform(id.begin(), id.end(), id.begin(), &ToUpper);
    return id;
}

Response States(const Places& places, const Query& /*query*/, std::chrono::sys_seconds /*now*/)
{
    XmlReply reply;
    for (const auto& state : places.States()) {
        reply.Child().Attribute("state", state.name).Attribute("state_id", state.id);
    }
    return ScriptReply(std::move(reply));
}

Response CitiesOfZipCode(const Places& places, const Query& query, std::chrono::sys_seconds /*now*/)
{
    return CityList(places.ByZip(TrimmedValue(query, "zipcode")));
}

Response NumberOfCities(const Places& places, const Query& query, std::chrono::sys_seconds /*now*/)
{
    const std::size_t count = places.Count(StateId(query), TrimmedValue(query, "city_string"));
    XmlReply reply;
    reply.Attribute("num_matches", std::to_string(count));
    reply.Attribute("max_matches", std::to_string(kMostWithoutQuestion));
    return ScriptReply(std::move(reply));
}

Response Cities(const Places& places, const Query& query, std::chrono::sys_seconds /*now*/)
{
    return CityList(places.Search(StateId(query), TrimmedValue(query, "city_string"), kMostCities));
}

Response CityInfo(const Places& places, const Query& query, std::chrono::sys_seconds now)
{
    const auto place = places.ByAtlasId(TrimmedValue(query, "aid"));
    const auto offset = place ? StandardOffset(place->timeZone, now) : std::nullopt;
    // Older versions of the program fail to start with such a place.
    if (!offset || *offset < std::chrono::hours(-12) || *offset > std::chrono::hours(14)) {
        return ScriptFailure(404, "There is no such place.\n");
    }
    XmlReply reply;
    reply.Child(place->key)
        .Attribute("atlas_id", place->atlasId)
        .Attribute("city", place->city)
        .Attribute("state", place->state)
        .Attribute("longitude", Words(place->longitude, 'E', 'W'))
        .Attribute("longitude_final", Formatted("%.5f", place->longitude))
        .Attribute("latitude", Words(place->latitude, 'N', 'S'))
        .Attribute("latitude_final", Formatted("%.5f", place->latitude))
        .Attribute("time_zone2", HoursText(*offset))
        .Attribute("utc_minutes", std::to_string(offset->count()))
        .Attribute("tz", place->timeZone);
    if (place->elevation) {
        reply.Attribute("elevation", std::to_string(*place->elevation));
    }
    return ScriptReply(std::move(reply));
}

struct PlaceScript
{
    std::string_view name;
    Response (*answer)(const Places&, const Query&, std::chrono::sys_seconds);
};

const PlaceScript* Find(std::string_view name)
{
    static constexpr PlaceScript kScripts[] = {
        {"getStates.pl", &States},
        {"getUsCanCity.pl", &CitiesOfZipCode},
        {"getNumMatchingCities.pl", &NumberOfCities},
        {"getMatchingCities.pl", &Cities},
        {"getCityInfo.pl", &CityInfo},
    };
    const auto* const found = std::find_if(std::begin(kScripts), std::end(kScripts),
                                           [name](const PlaceScript& script) { return script.name == name; });
    return found == std::end(kScripts) ? nullptr : found;
}

} // namespace

std::string HoursText(std::chrono::minutes offset)
{
    std::string text = Formatted("%.4f", static_cast<double>(offset.count()) / 60.0);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    return text;
}

std::string_view PlaceScriptName(std::string_view name)
{
    const PlaceScript* const found = Find(name);
    return found == nullptr ? "unknown" : found->name;
}

Response AnswerFromPlaces(const Places* places, std::string_view name, const Query& query,
                          std::chrono::sys_seconds now)
{
    const PlaceScript* const found = Find(name);
    if (found == nullptr) {
        return ScriptFailure(404, "There is no such script.\n");
    }
    return places == nullptr ? ScriptFailure(503, "No places are loaded.\n")
                             : found->answer(*places, query, now);
}

} // namespace beacond
