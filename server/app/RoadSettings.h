// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"

namespace beacond {

class SettingsReader;

/// Reads the keys of [messages] for sign-ups and for the roads by which they come in. Records an error for
/// each mistake.
void ReadRoads(SettingsReader& reader, Settings::Messages& messages);

/// The words of an invite file, one on each line; empty for no file. Throws SettingsError if it can't be
/// read, or has no word.
[[nodiscard]] std::vector<std::string> ReadInvites(const std::filesystem::path& file);

} // namespace beacond
