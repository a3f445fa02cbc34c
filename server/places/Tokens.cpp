// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Tokens.h"

#include "support/Ascii.h"
#include "support/Utf8.h"

#include <algorithm>
#include <array>

namespace beacond {

namespace {

// The elements of settings.xml; those of the prayers also stand in src/engine/Prayers.h.
constexpr std::array<std::string_view, 13> kWordsOfTheSettings = {
    "DefaultAd", "alerts",    "app",     "asr",  "current", "duhr",   "fajr",
    "isha",      "locations", "maghrib", "root", "shuruq",  "version"};

} // namespace

bool IsToken(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return IsLetterOrDigit(c) || c == '.' || c == '_' || c == '~' || c == '-';
    });
}

bool IsText(std::string_view text)
{
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    return !text.empty() && std::none_of(text.begin(), text.end(), isControl) && IsValidUtf8(text);
}

bool IsPlaceKey(std::string_view text)
{
    return IsToken(text) && (IsLetter(text.front()) || text.front() == '_') &&
           text.find('~') == std::string_view::npos &&
           std::find(kWordsOfTheSettings.begin(), kWordsOfTheSettings.end(), text) ==
               kWordsOfTheSettings.end();
}

} // namespace beacond
