// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace beacond {

struct Settings;

/// The findings about the parts that a configuration names, one line each.
struct Findings
{
    std::vector<std::string> errors;   ///< the service would not start
    std::vector<std::string> warnings; ///< the service would start, but not work as it should
};

/// Opens each part as the service would, and creates nothing: a missing file or folder stays missing.
/// The ports may be free or those of a service that runs.
/// @param isActivated the service manager listens at http.listen: that port is not checked
/// @param isConnecting also connects to the servers of the channels
[[nodiscard]] Findings CheckParts(const Settings& settings, bool isActivated, bool isConnecting);

} // namespace beacond
