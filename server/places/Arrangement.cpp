// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Arrangement.h"

#include "places/Distinction.h"
#include "places/FileContents.h"
#include "places/Fold.h"
#include "places/Gazetteer.h"
#include "places/PlacesError.h"

#include <unicode/coll.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace beacond {

namespace {

constexpr std::string_view kStateSeparator = " - ";

/// Fills the rows of places and what they refer to.
class PlaceRows
{
public:
    PlaceRows(const Gazetteer& gazetteer, FileContents& contents)
        : m_gazetteer(gazetteer)
        , m_contents(contents)
    {
        for (std::size_t i = 0; i < gazetteer.shipped.size(); ++i)
            m_shipped.emplace(gazetteer.shipped[i].id, static_cast<std::uint16_t>(i));
    }

    void Fill()
    {
        for (const ShippedPlace& shipped : m_gazetteer.shipped) {
            m_contents.shipped.push_back({m_contents.texts.Share(shipped.atlasId),
                                          m_contents.texts.Share(shipped.key),
                                          m_contents.texts.Share(shipped.state), 0});
        }
        for (const GazetteerPlace& place : m_gazetteer.places)
            Add(place);
        std::sort(m_contents.ids.begin(), m_contents.ids.end(),
                  [](const layout::Id& a, const layout::Id& b) { return a.id < b.id; });
    }

private:
    void Add(const GazetteerPlace& place)
    {
        const auto number = static_cast<std::uint32_t>(m_contents.places.size());
        const auto shipped = m_shipped.find(place.id);
        layout::Place row = {};
        row.id = place.id;
        row.name = m_contents.texts.Share(place.name);
        row.latitude = place.latitude;
        row.longitude = place.longitude;
        row.population = place.population;
        row.firstDivision = DivisionName(place.firstDivision);
        row.secondDivision = DivisionName(place.secondDivision);
        row.region = static_cast<std::uint16_t>(place.region);
        row.zone = Zone(place.zone);
        row.elevation = place.elevation.value_or(layout::kNoElevation);
        row.shipped = shipped == m_shipped.end() ? layout::kNotShipped : shipped->second;
        m_contents.places.push_back(row);
        if (place.isCopy)
            return;
        m_contents.ids.push_back({place.id, number});
        if (shipped != m_shipped.end())
            m_contents.shipped[shipped->second].place = number;
    }

    layout::Text DivisionName(const std::string& code)
    {
        const auto division = m_gazetteer.divisions.find(code);
        return m_contents.texts.Share(division == m_gazetteer.divisions.end() ? "" : division->second);
    }

    std::uint16_t Zone(const std::string& name)
    {
        const auto [zone, isNew] =
            m_zones.try_emplace(name, static_cast<std::uint16_t>(m_contents.zones.size()));
        if (isNew)
            m_contents.zones.push_back(m_contents.texts.Share(name));
        return zone->second;
    }

    const Gazetteer& m_gazetteer;
    FileContents& m_contents;
    std::unordered_map<std::uint32_t, std::uint16_t> m_shipped;
    std::unordered_map<std::string, std::uint16_t> m_zones;
};

void FillRegions(const Gazetteer& gazetteer, FileContents& contents)
{
    std::uint32_t next = 0;
    for (std::size_t i = 0; i < gazetteer.regions.size(); ++i) {
        layout::Region region = {};
        region.country = contents.texts.Share(gazetteer.regions[i].Country());
        region.name = contents.texts.Share(gazetteer.regions[i].name);
        region.firstPlace = next;
        while (next < gazetteer.places.size() && gazetteer.places[next].region == i)
            ++next;
        region.placeCount = next - region.firstPlace;
        contents.regions.push_back(region);
    }
}

std::string NameOf(const Gazetteer& gazetteer, std::size_t country, std::size_t region)
{
    const std::string& name = gazetteer.regions[region].name;
    return region == country ? name : gazetteer.regions[country].name + std::string(kStateSeparator) + name;
}

/// A country or state with at least one place that a search finds.
struct ListedScope
{
    icu::UnicodeString country; ///< the states of a country follow it directly
    icu::UnicodeString name;
    layout::Scope row;
};

bool HasPlace(const Gazetteer& gazetteer, const layout::Region& region)
{
    const auto first = gazetteer.places.begin() + region.firstPlace;
    return std::any_of(first, first + region.placeCount,
                       [](const GazetteerPlace& place) { return !place.hidden; });
}

std::vector<ListedScope> ListedScopes(const Gazetteer& gazetteer, FileContents& contents)
{
    std::vector<ListedScope> scopes;
    std::size_t country = 0;
    for (std::size_t i = 0; i < gazetteer.regions.size(); ++i) {
        if (gazetteer.regions[i].Country() != gazetteer.regions[country].Country())
            country = i;
        std::size_t end = i + 1;
        while (i == country && end < gazetteer.regions.size() &&
               gazetteer.regions[end].Country() == gazetteer.regions[country].Country())
            ++end;
        const auto first = contents.regions.begin();
        if (std::none_of(first + static_cast<std::ptrdiff_t>(i), first + static_cast<std::ptrdiff_t>(end),
                         [&](const layout::Region& region) { return HasPlace(gazetteer, region); }))
            continue;
        const std::string name = NameOf(gazetteer, country, i);
        scopes.push_back({icu::UnicodeString::fromUTF8(gazetteer.regions[country].name),
                          i == country ? icu::UnicodeString() : icu::UnicodeString::fromUTF8(name),
                          {contents.texts.Share(gazetteer.regions[i].id), contents.texts.Share(name),
                           static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(end - i)}});
    }
    return scopes;
}

void FillScopes(const Gazetteer& gazetteer, FileContents& contents)
{
    std::vector<ListedScope> scopes = ListedScopes(gazetteer, contents);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale::getEnglish(), status));
    if (U_FAILURE(status))
        throw PlacesError("the Unicode library has no collation rules");
    std::sort(scopes.begin(), scopes.end(), [&collator, &status](const ListedScope& a, const ListedScope& b) {
        const UCollationResult countries = collator->compare(a.country, b.country, status);
        return countries != UCOL_EQUAL ? countries == UCOL_LESS
                                       : collator->compare(a.name, b.name, status) == UCOL_LESS;
    });
    for (const ListedScope& scope : scopes)
        contents.scopes.push_back(scope.row);
}

/// Sets the distinctions of the places from `first` to `last`, which a list may show together.
void DistinguishPlaces(const Gazetteer& gazetteer, FileContents& contents, std::size_t first,
                       std::size_t last, ListKind list)
{
    std::unordered_map<std::string, std::vector<std::size_t>> byName;
    for (std::size_t i = first; i < last; ++i) {
        if (!gazetteer.places[i].hidden)
            byName[Fold(gazetteer.places[i].name)].push_back(i);
    }
    const auto text = [&contents](layout::Text at) {
        return std::string_view(contents.texts.Bytes().c_str() + at);
    };
    for (const auto& group : byName) {
        const std::vector<std::size_t>& alike = group.second;
        std::vector<PlaceLabel> labels;
        for (const std::size_t i : alike) {
            const layout::Place& row = contents.places[i];
            labels.push_back({text(row.name), text(row.firstDivision), text(row.secondDivision), row.latitude,
                              row.longitude, row.population});
        }
        Distinguish(labels, list, [&](std::size_t i, layout::Distinction distinction) {
            layout::Place& row = contents.places[alike[i]];
            (list == ListKind::Country ? row.inCountry : row.inRegion) =
                static_cast<std::uint8_t>(distinction);
        });
    }
}

void FillDistinctions(const Gazetteer& gazetteer, FileContents& contents)
{
    for (const layout::Scope& scope : contents.scopes) {
        const layout::Region& first = contents.regions[scope.firstRegion];
        const layout::Region& last = contents.regions[scope.firstRegion + scope.regionCount - 1];
        const bool isState = gazetteer.regions[scope.firstRegion].IsState();
        DistinguishPlaces(gazetteer, contents, first.firstPlace, last.firstPlace + last.placeCount,
                          isState ? ListKind::Region : ListKind::Country);
    }
}

} // namespace

void SortPlaces(Gazetteer& gazetteer)
{
    constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();
    const auto order = [](const GazetteerPlace& place) {
        return std::tuple(place.region, kLargest - place.population, place.id);
    };
    std::sort(gazetteer.places.begin(), gazetteer.places.end(),
              [&order](const GazetteerPlace& a, const GazetteerPlace& b) { return order(a) < order(b); });
    std::sort(gazetteer.shipped.begin(), gazetteer.shipped.end(),
              [](const ShippedPlace& a, const ShippedPlace& b) { return a.atlasId < b.atlasId; });
}

void ArrangePlaces(const Gazetteer& gazetteer, FileContents& contents)
{
    // Rows of places hold the numbers of both in 16 bits.
    if (gazetteer.regions.size() > layout::kNotShipped || gazetteer.shipped.size() > layout::kNotShipped)
        throw PlacesError("more regions or shipped places than a places file holds");
    PlaceRows(gazetteer, contents).Fill();
    FillRegions(gazetteer, contents);
    FillScopes(gazetteer, contents);
    FillDistinctions(gazetteer, contents);
}

} // namespace beacond
