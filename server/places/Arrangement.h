// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace beacond {

struct FileContents;
struct Gazetteer;
struct ImportReport;

/// Puts the gazetteer into the order of a places file: places by region, the largest first, and shipped
/// places by identifier. The other functions of this file need that order: a place's index in the gazetteer
/// is its number in the file.
void SortPlaces(Gazetteer& gazetteer);

/// Fills scopes, regions, places, ids, shipped places and zones.
void ArrangePlaces(const Gazetteer& gazetteer, FileContents& contents);

/// Fills the names that a search compares, region by region. Needs the regions.
void ArrangeNames(const Gazetteer& gazetteer, FileContents& contents);

} // namespace beacond
