// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"

#include <string>

namespace beacond {

/// Answers requests until SIGTERM or SIGINT, then waits at most three seconds for the requests under way, and
/// stores the counted starts. SIGHUP reads the configuration and the places file again and applies either all
/// changes that a running service can apply, or none. Throws before the first answer if a part can't be
/// opened: ListenError, StoreError, KeyError, PlacesError, ChannelError.
/// @param file the configuration file, empty for none: then SIGHUP reads only the places file
void Serve(const Settings& settings, const std::filesystem::path& file);

/// The path of a store address such as "sqlite:state/service.db".
[[nodiscard]] std::string SqlitePath(const std::string& url);
/// The same; creates the folder if it is missing.
[[nodiscard]] std::string SqlitePathInItsFolder(const std::string& url);

} // namespace beacond
