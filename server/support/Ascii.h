// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace beacond {

// Unlike the functions of <cctype>, these do not depend on the locale.

[[nodiscard]] constexpr bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

[[nodiscard]] constexpr bool IsLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

[[nodiscard]] constexpr bool IsLetterOrDigit(char character)
{
    return IsLetter(character) || IsDigit(character);
}

/// The capital of a small letter; any other character unchanged.
[[nodiscard]] constexpr char ToUpper(char character)
{
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

/// The small letter of a capital; any other character unchanged.
[[nodiscard]] constexpr char ToLower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// @p text without the characters in @p space at both ends.
[[nodiscard]] constexpr std::string_view Trimmed(std::string_view text, std::string_view space = " ")
{
    const std::size_t first = text.find_first_not_of(space);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(space) - first + 1);
}

} // namespace beacond
