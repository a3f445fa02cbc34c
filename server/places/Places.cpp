// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Places.h"

#include "places/Distinction.h"
#include "places/Fold.h"
#include "places/Matching.h"
#include "places/Numbers.h"
#include "places/PostalJoin.h"
#include "support/Ascii.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>

namespace beacond {

namespace {

// Limit the text: no name in the tables is longer. Folding can expand one letter to eighteen, and the search
// for typing errors runs several times, so that a longer text would cost much and find nothing.
constexpr std::size_t kLongestLetters = 200;

std::string FoldLetters(std::string_view letters)
{
    std::string folded = letters.size() > kLongestLetters ? std::string() : Fold(letters);
    return folded.size() > kLongestLetters ? std::string() : folded;
}

constexpr std::string_view kKeyPrefix = "G";
constexpr std::size_t kZipDigits = 5;
constexpr std::size_t kZipPlusFourDigits = 9;
// Many tables contain only the areas of longer codes: "M5V" in Canada, "SW1A" in Britain, "1012" in the
// Netherlands. The shortest areas have three letters or digits.
constexpr std::size_t kAreaLetters = 3;
// Brazil, the only country with codes of eight digits: GeoNames' table has the first code of each town.
constexpr std::size_t kDigitsOfARange = 8;
constexpr std::size_t kSharedDigitsOfARange = 1;
constexpr std::size_t kMostNeighbours = 5;

bool IsDigits(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), &IsDigit);
}

} // namespace

std::shared_ptr<const Places> Places::Open(const std::filesystem::path& path)
{
    return std::make_shared<const Places>(path);
}

Places::Places(const std::filesystem::path& path)
    : m_file(path)
{
    for (const layout::Scope& scope : m_file.Scopes())
        m_scopes.emplace(m_file.TextAt(scope.id), &scope);
    std::vector<bool> isFirst(m_file.Places().size());
    for (const layout::Id& id : m_file.Ids())
        isFirst[id.place] = true;
    for (const layout::Place& row : m_file.Places()) {
        const layout::Place* first =
            isFirst[static_cast<std::size_t>(&row - m_file.Places().data())] ? nullptr : RowOfId(row.id);
        if (first)
            m_firstRows.emplace(&row, first);
    }
}

std::vector<State> Places::States() const
{
    std::vector<State> states;
    for (const layout::Scope& scope : m_file.Scopes())
        states.push_back({m_file.TextAt(scope.name), m_file.TextAt(scope.id)});
    return states;
}

std::size_t Places::Count(std::string_view stateId, std::string_view letters) const
{
    const layout::Scope* scope = ScopeOf(stateId);
    return scope ? FindPlaces(m_file, *scope, FoldLetters(letters)).size() : 0;
}

std::vector<Match> Places::Search(std::string_view stateId, std::string_view letters, std::size_t most) const
{
    const layout::Scope* scope = ScopeOf(stateId);
    if (!scope)
        return {};
    std::vector<FoundPlace> found = FindPlaces(m_file, *scope, FoldLetters(letters));
    KeepBest(found, most);
    const bool wholeCountry = stateId.find('-') == std::string_view::npos;
    std::vector<Match> matches;
    matches.reserve(found.size());
    for (const FoundPlace& place : found)
        matches.push_back(MatchOf(place.place, wholeCountry));
    return matches;
}

std::vector<Match> Places::ByZip(std::string_view code) const
{
    const std::string text = NormalPostalCode(code);
    std::string_view area = text;
    std::vector<Match> matches = MatchesOf(RowsOfCode(area));
    if (IsDigits(area)) {
        if (matches.empty() && area.size() == kZipPlusFourDigits)
            area = area.substr(0, kZipDigits);
        if (matches.empty() && area.size() == kDigitsOfARange)
            return MatchesOf(RangeOfCode(area));
        return area.size() == kZipDigits ? MatchesOf(RowsOfZip(area)) : matches;
    }
    while (matches.empty() && area.size() > kAreaLetters) {
        area.remove_suffix(1);
        matches = MatchesOf(RowsOfCode(area));
    }
    return matches;
}

std::optional<Place> Places::ByAtlasId(std::string_view id) const
{
    const layout::Place* row = RowOf(id);
    if (!row)
        return std::nullopt;
    const layout::Region& region = m_file.Regions()[row->region];
    Place place;
    place.key = std::string(kKeyPrefix) + std::to_string(row->id);
    place.state = m_file.TextAt(region.name);
    if (row->shipped != layout::kNotShipped) {
        place.key = m_file.TextAt(m_file.Shipped()[row->shipped].key);
        place.state = m_file.TextAt(m_file.Shipped()[row->shipped].state);
    }
    place.atlasId = AtlasIdOf(*row);
    place.city = m_file.TextAt(row->name);
    place.country = m_file.TextAt(region.country);
    place.latitude = row->latitude / layout::kUnitsPerDegree;
    place.longitude = row->longitude / layout::kUnitsPerDegree;
    if (row->elevation != layout::kNoElevation)
        place.elevation = row->elevation;
    place.timeZone = m_file.TextAt(m_file.Zones()[row->zone]);
    return place;
}

const layout::Scope* Places::ScopeOf(std::string_view stateId) const
{
    const auto scope = m_scopes.find(stateId);
    return scope == m_scopes.end() ? nullptr : scope->second;
}

const layout::Place* Places::RowOf(std::string_view atlasId) const
{
    const auto shipped = std::lower_bound(m_file.Shipped().begin(), m_file.Shipped().end(), atlasId,
                                          [this](const layout::Shipped& s, std::string_view wanted) {
                                              return m_file.TextAt(s.atlasId) < wanted;
                                          });
    if (shipped != m_file.Shipped().end() && m_file.TextAt(shipped->atlasId) == atlasId)
        return &m_file.Places()[shipped->place];
    // The country before the hyphen is for statistics only: a place keeps its identifier when its country
    // changes.
    const std::size_t mark = atlasId.find('-');
    const std::string_view key = atlasId.substr(mark == std::string_view::npos ? 0 : mark + 1);
    if (!key.starts_with(kKeyPrefix))
        return nullptr;
    const auto number = NumberIn<std::uint32_t>(key.substr(kKeyPrefix.size()));
    return number ? RowOfId(*number) : nullptr;
}

const layout::Place* Places::RowOfId(std::uint32_t number) const
{
    const auto id = std::lower_bound(m_file.Ids().begin(), m_file.Ids().end(), number,
                                     [](const layout::Id& i, std::uint32_t wanted) { return i.id < wanted; });
    return id != m_file.Ids().end() && id->id == number ? &m_file.Places()[id->place] : nullptr;
}

std::string Places::AtlasIdOf(const layout::Place& row) const
{
    if (row.shipped != layout::kNotShipped)
        return m_file.TextAt(m_file.Shipped()[row.shipped].atlasId);
    // A second row of a disputed place has the identifier of the first.
    const auto first = m_firstRows.find(&row);
    const layout::Region& region =
        m_file.Regions()[first == m_firstRows.end() ? row.region : first->second->region];
    return std::string(m_file.TextAt(region.country)) + "-" + std::string(kKeyPrefix) +
           std::to_string(row.id);
}

Match Places::MatchOf(std::uint32_t place, bool wholeCountry) const
{
    const layout::Place& row = m_file.Places()[place];
    const PlaceLabel label = {m_file.TextAt(row.name), m_file.TextAt(row.firstDivision),
                              m_file.TextAt(row.secondDivision), row.latitude, row.longitude};
    const auto distinction = static_cast<layout::Distinction>(wholeCountry ? row.inCountry : row.inRegion);
    return {DistinctName(label, distinction, wholeCountry ? ListKind::Country : ListKind::Region),
            AtlasIdOf(row)};
}

Places::Codes::iterator Places::FirstRowFrom(std::string_view code) const
{
    return std::lower_bound(m_file.Codes().begin(), m_file.Codes().end(), code,
                            [this](const layout::Code& row, std::string_view wanted) {
                                return m_file.TextAt(row.code) < wanted;
                            });
}

Places::Codes Places::RowsOfCode(std::string_view code) const
{
    const auto first = FirstRowFrom(code);
    return {first, std::find_if(first, m_file.Codes().end(),
                                [&](const layout::Code& row) { return m_file.TextAt(row.code) != code; })};
}

std::vector<layout::Code> Places::RowsOfZip(std::string_view code) const
{
    const Codes rows = RowsOfCode(code);
    std::vector<layout::Code> all;
    if (rows.empty() || !IsZip(rows.front()))
        all = NeighboursOfZip(code);
    all.insert(all.end(), rows.begin(), rows.end());
    return all;
}

Places::Codes Places::RangeOfCode(std::string_view code) const
{
    for (auto row = FirstRowFrom(code); row != m_file.Codes().begin();) {
        const std::string_view other = m_file.TextAt((--row)->code);
        if (!other.starts_with(code.substr(0, kSharedDigitsOfARange)))
            break;
        if (other.size() == code.size() && IsDigits(other))
            return RowsOfCode(other);
    }
    return {};
}

bool Places::IsZip(const layout::Code& code) const
{
    return HasZipCodes(m_file.TextAt(m_file.Regions()[m_file.Places()[code.place].region].country));
}

std::vector<layout::Code> Places::NeighboursOfZip(std::string_view code) const
{
    std::vector<layout::Code> best;
    for (std::size_t digits = code.size() - 1; best.empty() && digits >= kAreaLetters; --digits) {
        const std::string_view shared = code.substr(0, digits);
        std::map<std::uint32_t, std::size_t> codesOfPlace;
        std::string_view last;
        for (auto row = FirstRowFrom(shared); row != m_file.Codes().end(); ++row) {
            const std::string_view other = m_file.TextAt(row->code);
            if (!other.starts_with(shared))
                break;
            // Only the best place of each code.
            if (other.size() == code.size() && IsZip(*row) && other != last &&
                codesOfPlace[row->place]++ == 0)
                best.push_back(*row);
            last = other;
        }
        const auto order = [&](const layout::Code& row) {
            return std::tuple(~codesOfPlace[row.place], ~m_file.Places()[row.place].population, row.place);
        };
        std::sort(best.begin(), best.end(),
                  [&](const layout::Code& a, const layout::Code& b) { return order(a) < order(b); });
    }
    best.resize(std::min(best.size(), kMostNeighbours));
    return best;
}

std::vector<Match> Places::MatchesOf(Codes rows) const
{
    const bool isOfSeveralCountries = std::any_of(rows.begin(), rows.end(), [&](const layout::Code& row) {
        return CountryOf(row) != CountryOf(rows.front());
    });
    std::vector<Match> matches;
    for (const layout::Code& row : rows) {
        matches.push_back(MatchOf(row.place, true));
        if (isOfSeveralCountries)
            matches.back().city.append(", ").append(CountryOf(row));
    }
    return matches;
}

std::string_view Places::CountryOf(const layout::Code& code) const
{
    const layout::Place& place = m_file.Places()[code.place];
    const std::string_view id = m_file.TextAt(m_file.Regions()[place.region].country);
    const layout::Scope* const country = ScopeOf(id);
    return country ? m_file.TextAt(country->name) : id;
}

} // namespace beacond
