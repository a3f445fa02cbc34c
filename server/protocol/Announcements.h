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

/// The strips and releases last read from the store.
struct Announcements
{
    std::vector<Strip> strips;
    std::vector<Release> releases;
};

/// The day of a time in UTC: "2027-03-10".
[[nodiscard]] std::string DayText(std::chrono::sys_seconds time);

/// Minutes until an installation asks for its next strip: 10 to 14, always the same for one identifier. A
/// client whose interval becomes shorter would stop asking.
[[nodiscard]] int WaitMinutes(std::string_view identifier);

/// The strip for an installation: the strips for its distribution, its country and the day take turns. Null
/// if there is none; the client then shows its default.
/// @param country two letters, or "ZZ"
[[nodiscard]] const Strip* ChooseStrip(const Announcements& announcements, std::string_view identifier,
                                       std::string_view dist, std::string_view country,
                                       std::chrono::sys_seconds now);

/// The newest release if it is newer than the client's, otherwise null. Versions compare by name, then by
/// sequence, as numbers.
/// @param name,sequence the client's version; a text that is no number counts as 0
[[nodiscard]] const Release* NewerRelease(const Announcements& announcements, std::string_view name,
                                          std::string_view sequence);

/// Whether the text is a release number: digits, optionally a point and more digits.
[[nodiscard]] bool IsVersionNumber(std::string_view text);

} // namespace beacond
