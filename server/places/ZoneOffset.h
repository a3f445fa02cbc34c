// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace beacond {

/// Whether the system's tz database has a zone of this name.
[[nodiscard]] bool IsTimeZone(std::string_view name);

/// The offset from UTC, east positive, that the zone's clocks show at `now` outside summer time: the user
/// adds the summer hour in the program. Taken from the system's tz database. Where the database has a
/// standard time that lies above the other one (Europe/Dublin), the lower of the two, unless it holds for
/// some weeks only (Africa/Casablanca in Ramadan). Empty if there is no such zone.
[[nodiscard]] std::optional<std::chrono::minutes> StandardOffset(std::string_view zone,
                                                                 std::chrono::sys_seconds now);

/// Reads zones again from now on if the tz database has changed since the last call. Not thread-safe, but
/// the other functions may be called meanwhile.
void ReadZonesAgain();

} // namespace beacond
