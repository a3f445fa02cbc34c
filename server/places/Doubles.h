// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace beacond {

struct Gazetteer;

/// Hides the lesser of two rows that are one place, and adds its names to the aliases of the other: rows of
/// one shown name in one region, either within 4 km if only one of them has a population (the seat of a
/// district is a row of its own), or within 1 km in one district. Its identifier still answers.
void HideDoubles(Gazetteer& gazetteer);

} // namespace beacond
