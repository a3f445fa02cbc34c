// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The strips and releases as they were last read from the store.
struct Announcements
{
    std::vector<Strip> strips;
    std::vector<Release> releases;
};

/// The day of a moment, UTC: "2027-03-10".
[[nodiscard]] std::string DayText(std::chrono::sys_seconds time);

/// Minutes until an installation asks for its next strip: 10 to 14, always the same for one identifier. A
/// client whose time becomes shorter than before would stop asking.
[[nodiscard]] int WaitMinutes(std::string_view identifier);

/// The strip for an installation: of those for its distribution, its country and the day, one after the
/// other. Null if there is none, and the client shows its own.
/// @param country two letters, or "ZZ"
[[nodiscard]] const Strip* ChooseStrip(const Announcements& announcements, std::string_view identifier,
                                       std::string_view dist, std::string_view country,
                                       std::chrono::sys_seconds now);

/// The newest release if it is newer than the client's; null if none is. Versions compare by name, then by
/// sequence, as numbers.
/// @param name,sequence the client's own, as it sends them; a text that is no number counts as 0
[[nodiscard]] const Release* NewerRelease(const Announcements& announcements, std::string_view name,
                                          std::string_view sequence);

/// Whether the text is a number as releases are numbered: digits, and perhaps a point and more digits.
[[nodiscard]] bool IsVersionNumber(std::string_view text);

} // namespace beacond
