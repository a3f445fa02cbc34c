// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace beacond {

/// Whether texts can be written in that language, such as "en".
[[nodiscard]] bool IsTextLanguage(std::string_view language);
/// The languages, separated by commas.
[[nodiscard]] std::string TextLanguages();

/// Whether the text is a time of a day in the form that the program sends, "5:07" or "17:30".
[[nodiscard]] bool IsClockTime(std::string_view text);

/// The text of a prayer, "Maghrib 18:42".
/// @param prayer 1 Fajr to 6 Isha; 0 for the last text to a device that another one replaces
/// @param time left out unless IsClockTime
[[nodiscard]] std::string PrayerText(std::string_view language, int prayer, std::string_view time);

} // namespace beacond
