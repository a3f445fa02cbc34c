// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/FileLayout.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace beacond {

/// A list of places: of a whole country, or of one region of it.
enum class ListKind { Country, Region };

/// The parts of a place that a list can show.
struct PlaceLabel
{
    std::string_view name;
    std::string_view firstDivision;  ///< its name, may be empty
    std::string_view secondDivision; ///< its name, may be empty
    std::int32_t latitude = 0;       ///< in layout::kUnitsPerDegree
    std::int32_t longitude = 0;      ///< in layout::kUnitsPerDegree
    std::uint32_t population = 0;
};

/// "Springfield", "Springfield (Illinois)", "Springfield (Sangamon County, Illinois)" or "Springfield (39.802
/// N, 89.644 W)". A list of one region omits the region's name.
[[nodiscard]] std::string DistinctName(const PlaceLabel& label, layout::Distinction distinction,
                                       ListKind list);

/// Finds the least distinction by which the texts of places of one name differ, and passes it to `set` with
/// the place's index in `labels`. A single place has none, and of places that only their coordinates
/// distinguish, one with ten times the people of each other.
void Distinguish(std::span<const PlaceLabel> labels, ListKind list,
                 const std::function<void(std::size_t, layout::Distinction)>& set);

/// A coordinate in units of the places file as "39.802 N"; `letters` are the letters of the positive and the
/// negative side.
[[nodiscard]] std::string CoordinateText(std::int32_t units, std::string_view letters);

} // namespace beacond
