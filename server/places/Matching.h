// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/FileLayout.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace beacond {

class PlacesFile;

struct FoundPlace
{
    std::uint32_t place;  ///< its number in the file
    std::uint64_t weight; ///< by match and population, the best has the largest
};

/// The places of a scope with a name, or a word of a name, that begins with `folded`; each once, in no order.
/// If there are none, the places with a name that begins with `folded` except for one typing error.
[[nodiscard]] std::vector<FoundPlace> FindPlaces(const PlacesFile& file, const layout::Scope& scope,
                                                 std::string_view folded);

/// Moves the `most` best places to the front, in their order, and drops the others.
void KeepBest(std::vector<FoundPlace>& found, std::size_t most);

} // namespace beacond
