// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/ChannelOptions.h"

#include <filesystem>
#include <string>
#include <vector>

namespace beacond {

class SettingsReader;

/// Reads [[messages.channel]]. Records an error for each mistake.
/// @param names the channels to use, messages.channels
/// @param spool the folder of the channel "spool", which needs no table of its own
/// @return the options of the channels in @p names
[[nodiscard]] std::vector<ChannelOptions> ReadChannels(SettingsReader& reader,
                                                       const std::vector<std::string>& names,
                                                       const std::filesystem::path& spool);

} // namespace beacond
