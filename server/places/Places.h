// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/PlacesFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace beacond {

/// A row of the list of countries and states.
struct State
{
    std::string_view name; ///< "United States - Texas"
    std::string_view id;   ///< ISO 3166: "US-TX"
};

/// A row of a list of places.
struct Match
{
    std::string city; ///< differs from the other rows of its list
    std::string atlasId;
};

struct Place
{
    std::string key; ///< a valid XML name, the same for ever
    std::string atlasId;
    std::string city;
    std::string state;      ///< the state's name where the country's states are listed, else the country's
    std::string country;    ///< two letters of ISO 3166-1
    double latitude = 0.0;  ///< degrees, north positive, five decimals
    double longitude = 0.0; ///< degrees, east positive, five decimals
    std::optional<int> elevation; ///< metres
    std::string timeZone;         ///< name in the tz database
};

/// All places of one places file. Thread-safe.
class Places final
{
public:
    /// Throws PlacesError with the reason if the file can't be used.
    [[nodiscard]] static std::shared_ptr<const Places> Open(const std::filesystem::path& path);

    explicit Places(const std::filesystem::path& path);

    /// The countries and states in the order of the list. The texts live as long as this object.
    [[nodiscard]] std::vector<State> States() const;

    /// The number of places of a country or state that match the letters; 0 for an unknown id or no letters.
    [[nodiscard]] std::size_t Count(std::string_view stateId, std::string_view letters) const;

    /// The `most` best of these places, best first.
    [[nodiscard]] std::vector<Match> Search(std::string_view stateId, std::string_view letters,
                                            std::size_t most) const;

    /// The places of a postal code, best first; none if the code is unknown. Accepts any case, spacing and
    /// digits, ZIP+4, and codes of a known area. For an unknown ZIP code these are the places of the codes
    /// that share its first four digits, else three. A code of eight digits belongs to the code of eight
    /// digits before it. If the code is one of several countries, those of the United States and Canada come
    /// first, and each row has its country.
    [[nodiscard]] std::vector<Match> ByZip(std::string_view code) const;

    /// The place with this identifier, also if it is hidden.
    [[nodiscard]] std::optional<Place> ByAtlasId(std::string_view id) const;

private:
    using Codes = std::span<const layout::Code>;

    [[nodiscard]] const layout::Scope* ScopeOf(std::string_view stateId) const;
    [[nodiscard]] const layout::Place* RowOf(std::string_view atlasId) const;
    [[nodiscard]] const layout::Place* RowOfId(std::uint32_t number) const;
    [[nodiscard]] std::string AtlasIdOf(const layout::Place& row) const;
    [[nodiscard]] Match MatchOf(std::uint32_t place, bool wholeCountry) const;
    [[nodiscard]] Codes::iterator FirstRowFrom(std::string_view code) const;
    [[nodiscard]] Codes RowsOfCode(std::string_view code) const;
    /// The rows of the code, after those of its neighbours if it is no ZIP code in the table.
    [[nodiscard]] std::vector<layout::Code> RowsOfZip(std::string_view code) const;
    /// The places of the ZIP codes that share all digits but the last one, else but the last two; the place
    /// of most codes first.
    [[nodiscard]] std::vector<layout::Code> NeighboursOfZip(std::string_view code) const;
    /// The rows of the greatest code of equal length before this one, with the same first digits.
    [[nodiscard]] Codes RangeOfCode(std::string_view code) const;
    [[nodiscard]] bool IsZip(const layout::Code& code) const;
    [[nodiscard]] std::vector<Match> MatchesOf(Codes rows) const;
    [[nodiscard]] std::string_view CountryOf(const layout::Code& code) const;

    PlacesFile m_file;
    std::unordered_map<std::string_view, const layout::Scope*> m_scopes; ///< by id
    /// For the places that are listed twice: the first row, by the second.
    std::unordered_map<const layout::Place*, const layout::Place*> m_firstRows;
};

} // namespace beacond
