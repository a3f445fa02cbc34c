// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"

#include <string>

namespace beacond {

/// Answers the world until SIGTERM or SIGINT, then lets the requests under way end, for at most three
/// seconds, and stores the counted starts. SIGHUP reads the configuration and the places file again and takes
/// up either all that a running service can, or nothing. Throws before it answers anything if a part can't be
/// opened: ListenError, StoreError, KeyError, PlacesError, ChannelError.
/// @param file of the configuration, empty for none: then SIGHUP reads the places file alone
void Serve(const Settings& settings, const std::filesystem::path& file);

/// The path of a store address such as "sqlite:state/service.db".
[[nodiscard]] std::string SqlitePath(const std::string& url);
/// The same; its folder is made if it is missing.
[[nodiscard]] std::string SqlitePathInItsFolder(const std::string& url);

} // namespace beacond
