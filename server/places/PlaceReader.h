// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace beacond {

class Columns;
struct Gazetteer;
struct GazetteerPlace;
struct ImportReport;

/// Reads rows of places, each checked. Skips an invalid row and counts it in the report.
class PlaceReader final
{
public:
    /// The gazetteer has its regions.
    PlaceReader(Gazetteer& gazetteer, ImportReport& report);

    /// Adds the place of a row of the packed table. Throws PlacesError above a million places.
    void Add(const Columns& row);

    /// Adds the place of a row of a newer table, or replaces the place with its id. Skips features other than
    /// populated places. Throws PlacesError above a million places.
    void AddOrReplace(const Columns& row);

private:
    const char* Take(const Columns& row, bool mayReplace);
    const char* Parse(const Columns& row, GazetteerPlace& place);
    void Replace(GazetteerPlace& old, GazetteerPlace place);
    bool IsKnownZone(std::string_view name);

    Gazetteer& m_gazetteer;
    ImportReport& m_report;
    std::unordered_map<std::string, std::size_t> m_regions;
    std::unordered_map<std::string, bool> m_zones;
    std::unordered_map<std::uint32_t, std::size_t> m_ids;    ///< index of a place
    std::unordered_map<std::string, std::uint32_t> m_points; ///< id of a place by country, name and point
};

} // namespace beacond
