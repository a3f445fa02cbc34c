// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace beacond {

/// Whether the system's tz database has a zone of this name.
[[nodiscard]] bool IsTimeZone(std::string_view name);

/// The zone's offset from UTC at `now`, east positive, without summer time: the user adds the summer hour in
/// the program. Source: the system's tz database. If the database defines a winter time below its standard
/// time (Europe/Dublin), the lower of the two, unless it lasts some weeks only (Africa/Casablanca in
/// Ramadan). Empty if there is no such zone.
[[nodiscard]] std::optional<std::chrono::minutes> StandardOffset(std::string_view zone,
                                                                 std::chrono::sys_seconds now);

/// Makes later calls read the zones again if the tz database has changed since the last call of this
/// function. One thread at a time; the other functions may run meanwhile.
void ReloadZones();

} // namespace beacond
