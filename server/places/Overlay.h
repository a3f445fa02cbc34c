// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace beacond {

class TextTable;
struct Gazetteer;
struct ImportReport;

/// Brings the corrections of an overlay table into the gazetteer. A row that fits no place is counted as
/// skipped.
void ApplyOverlay(const TextTable& overlay, Gazetteer& gazetteer, ImportReport& report);

/// Takes in the places of the program's own list; each is shown under its name there.
void ApplyShipped(const TextTable& shipped, Gazetteer& gazetteer, ImportReport& report);

} // namespace beacond
