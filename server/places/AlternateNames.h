// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace beacond {

class Dumps;
struct Gazetteer;
struct ImportReport;

/// Adds the names of the operator's tables of alternate names to the aliases of their places. Names in any
/// language count, short, colloquial and historic ones too; codes and links don't.
void AddAlternateNames(const Dumps& dumps, Gazetteer& gazetteer, ImportReport& report);

} // namespace beacond
