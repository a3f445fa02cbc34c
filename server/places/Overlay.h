// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace beacond {

class TextTable;
struct Gazetteer;
struct ImportReport;

/// The action of an overlay row that adds a place: the columns of a table of places follow.
inline constexpr std::string_view kAddedPlace = "place";
/// The action of an overlay row that adds a postal code: the columns of a table of postal codes follow.
inline constexpr std::string_view kAddedPostalCode = "postal";

/// Applies the corrections of an overlay table to the gazetteer; its added places are there already. A row
/// without a matching place counts as skipped.
void ApplyOverlay(const TextTable& overlay, Gazetteer& gazetteer, ImportReport& report);

/// Adds the places of the program's own list; each is shown under its name in that list.
void ApplyShipped(const TextTable& shipped, Gazetteer& gazetteer, ImportReport& report);

} // namespace beacond
