// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Doubles.h"

#include "places/FileLayout.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace beacond {

namespace {

constexpr double kKilometresPerDegree = 111.2;
constexpr double kSeatKm = 4.0;
constexpr double kSamePlaceKm = 1.0;
// Of one name in one region; a table of a million rows of one name would take hours.
constexpr std::size_t kMostAlike = 1000;

double DistanceKm(const GazetteerPlace& a, const GazetteerPlace& b)
{
    const double north = (a.latitude - b.latitude) / layout::kUnitsPerDegree;
    const double east = std::remainder((a.longitude - b.longitude) / layout::kUnitsPerDegree, 360.0) *
                        std::cos(a.latitude / layout::kUnitsPerDegree * std::numbers::pi / 180.0);
    return kKilometresPerDegree * std::hypot(north, east);
}

/// A row without a code of its district, which ends with a point, can be in any district.
bool MayShareDistrict(const GazetteerPlace& a, const GazetteerPlace& b)
{
    return a.secondDivision == b.secondDivision || a.secondDivision.ends_with('.') ||
           b.secondDivision.ends_with('.');
}

/// Whether `lesser` is the same place as `larger`, which has at least as many people.
bool IsDouble(const GazetteerPlace& larger, const GazetteerPlace& lesser)
{
    const double km = DistanceKm(larger, lesser);
    return (km < kSeatKm && larger.population > 0 && lesser.population == 0) ||
           (km < kSamePlaceKm && MayShareDistrict(larger, lesser));
}

/// Hides the doubles among places of one name in one region, the largest first.
void HideLesser(const std::vector<GazetteerPlace*>& alike, std::unordered_set<std::uint32_t>& hidden)
{
    for (std::size_t i = 1; i < alike.size(); ++i) {
        const GazetteerPlace& place = *alike[i];
        const auto last = alike.begin() + static_cast<std::ptrdiff_t>(std::min(i, kMostAlike));
        const auto larger = std::find_if(alike.begin(), last, [&](const GazetteerPlace* other) {
            return !hidden.contains(other->id) && IsDouble(*other, place);
        });
        if (larger == last)
            continue;
        hidden.insert(place.id);
        for (const std::string* names : {&place.name, &place.spellings, &place.aliases})
            (*larger)->aliases.append(",").append(*names);
    }
}

} // namespace

void HideDoubles(Gazetteer& gazetteer)
{
    std::unordered_map<std::string, std::vector<GazetteerPlace*>> byName;
    for (GazetteerPlace& place : gazetteer.places) {
        if (!place.hidden && !place.isCopy)
            byName[place.firstDivision + " " + Fold(place.name)].push_back(&place);
    }
    std::unordered_set<std::uint32_t> hidden;
    for (auto& [name, alike] : byName) {
        std::sort(alike.begin(), alike.end(), [](const GazetteerPlace* a, const GazetteerPlace* b) {
            return std::tuple(b->population, a->id) < std::tuple(a->population, b->id);
        });
        HideLesser(alike, hidden);
    }
    for (GazetteerPlace& place : gazetteer.places)
        place.hidden = place.hidden || hidden.contains(place.id);
}

} // namespace beacond
