// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/PersonalCode.h"

#include "secrets/Keys.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace beacond {

namespace {

constexpr std::size_t kDigits = 16;
constexpr std::size_t kDigitsOfAGroup = 4;
// At most four bytes for each digit, and as many separators as digits.
constexpr std::size_t kLongestTyped = 8 * kDigits;

bool IsSeparator(UChar32 character)
{
    return u_isUWhiteSpace(character) != 0 || u_charType(character) == U_DASH_PUNCTUATION ||
           u_charType(character) == U_FORMAT_CHAR;
}

} // namespace

std::string MakePersonalCode()
{
    std::string code;
    for (std::size_t i = 0; i < kDigits; ++i) {
        if (i > 0 && i % kDigitsOfAGroup == 0) {
            code += ' ';
        }
        code += static_cast<char>('0' + RandomBelow(10));
    }
    return code;
}

std::optional<std::string> DigitsOfPersonalCode(std::string_view typed)
{
    if (typed.size() > kLongestTyped) {
        return std::nullopt;
    }
    // Invalid UTF-8 becomes a character that is neither a digit nor a separator.
    const auto text = icu::UnicodeString::fromUTF8({typed.data(), static_cast<std::int32_t>(typed.size())});
    std::string digits;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 character = text.char32At(i);
        if (const std::int32_t digit = u_charDigitValue(character); digit >= 0) {
            digits += static_cast<char>('0' + digit);
        } else if (!IsSeparator(character)) {
            return std::nullopt;
        }
    }
    return digits.size() == kDigits ? std::optional(digits) : std::nullopt;
}

} // namespace beacond
