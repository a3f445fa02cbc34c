// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/HttpOptions.h"

namespace beacond {

struct Settings;

/// The options of the listener for the world. Raises the limit of open files as far as the system lets it,
/// and lowers the number of connections to what fits.
[[nodiscard]] HttpOptions OptionsOf(const Settings& settings);

} // namespace beacond
