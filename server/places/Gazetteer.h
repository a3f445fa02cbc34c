// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace beacond {

class Dumps;
struct ImportReport;
struct ImportSources;

/// A country, or a state of one.
struct GazetteerRegion
{
    std::string code; ///< "US", "US.TX"
    std::string id;   ///< "US", "US-TX"
    std::string name;

    [[nodiscard]] std::string_view Country() const { return std::string_view(code).substr(0, 2); }
    [[nodiscard]] bool IsState() const { return code.size() > 2; }
};

struct GazetteerPlace
{
    std::uint32_t id = 0;
    std::string name;
    std::string aliases;        ///< separated by commas
    std::string formerNames;    ///< separated by commas
    std::string spellings;      ///< further names that people use like `name`, separated by commas
    std::int32_t latitude = 0;  ///< in layout::kUnitsPerDegree
    std::int32_t longitude = 0; ///< in layout::kUnitsPerDegree
    std::string firstDivision;  ///< code, "US.TX"
    std::string secondDivision; ///< code, "US.TX.113"
    std::uint32_t population = 0;
    std::optional<std::int16_t> elevation;
    std::string zone;
    std::size_t region = 0; ///< index in Gazetteer::regions
    bool hidden = false;
    bool isCopy = false; ///< in a second region that lists the place too
};

struct ShippedPlace
{
    std::string key;
    std::string atlasId;
    std::uint32_t id = 0;
    std::string state;
};

/// The data of the places before they are arranged for the search.
struct Gazetteer
{
    std::vector<GazetteerRegion> regions; ///< a country before its states
    std::vector<GazetteerPlace> places;
    std::vector<ShippedPlace> shipped;
    std::unordered_map<std::string, std::string> divisions; ///< name by code
};

/// Reads the tables, first the packed ones, then the operator's, and applies the overlay and the shipped
/// places. Throws PlacesError if a table can't be read.
[[nodiscard]] Gazetteer ReadGazetteer(const ImportSources& sources, const Dumps& dumps, ImportReport& report);

/// The parts of a place's comma-separated aliases or spellings, empty ones left out.
[[nodiscard]] std::vector<std::string_view> SplitNames(std::string_view names);

} // namespace beacond
