// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Romanization.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>

namespace beacond {

namespace {

constexpr std::array<std::string_view, 60> kOtherScripts = {
    "AE", "AF", "AM", "BD", "BG", "BH", "BT", "BY", "CN", "CY", "DJ", "DZ", "EG", "EH", "ER",
    "ET", "GE", "GR", "HK", "IL", "IN", "IQ", "IR", "JO", "JP", "KG", "KH", "KP", "KR", "KW",
    "KZ", "LA", "LB", "LK", "LY", "MA", "MK", "MM", "MN", "MO", "MR", "MV", "NP", "OM", "PK",
    "PS", "QA", "RS", "RU", "SA", "SD", "SO", "SY", "TD", "TH", "TJ", "TN", "TW", "UA", "YE"};
static_assert(std::is_sorted(kOtherScripts.begin(), kOtherScripts.end()));

constexpr std::array<std::string_view, 10> kCyrillic = {"BG", "BY", "KG", "KZ", "MK",
                                                        "MN", "RS", "RU", "TJ", "UA"};
static_assert(std::is_sorted(kCyrillic.begin(), kCyrillic.end()));

bool IsOneOf(const auto& countries, std::string_view country)
{
    return std::binary_search(countries.begin(), countries.end(), country);
}

bool IsScientificMark(UChar32 mark, UChar32 letter)
{
    constexpr UChar32 kMacron = 0x0304;
    constexpr UChar32 kDotBelow = 0x0323;
    constexpr UChar32 kCedilla = 0x0327;
    constexpr UChar32 kMacronBelow = 0x0331;
    const bool isMark = mark == kMacron || mark == kDotBelow || mark == kCedilla || mark == kMacronBelow;
    UErrorCode status = U_ZERO_ERROR;
    return isMark && letter != 'c' && letter != 'C' && uscript_getScript(letter, &status) == USCRIPT_LATIN;
}

bool IsLeftHalfRing(UChar32 c)
{
    return c == 0x2018 || c == 0x02BB || c == 0x02BF;
}

/// The right quotation mark is an apostrophe, but a soft sign where `isCyrillic`.
icu::UnicodeString WithoutScientificMarks(const icu::UnicodeString& decomposed, bool isCyrillic)
{
    constexpr UChar32 kRightQuote = 0x2019;
    icu::UnicodeString plain;
    UChar32 letter = 0;
    for (std::int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
        const UChar32 c = decomposed.char32At(i);
        if (IsLeftHalfRing(c) || IsScientificMark(c, letter) || (isCyrillic && c == kRightQuote))
            continue;
        plain.append(c == kRightQuote ? UChar32{'\''} : c);
        if (u_getCombiningClass(c) == 0)
            letter = c;
    }
    return plain;
}

/// The name without the end that people do not write: further names after a comma, the Korean word for city,
/// a soft sign.
std::string_view WithoutEnd(std::string_view name, std::string_view country)
{
    constexpr std::string_view kKoreanCity = "-si";
    std::string_view shorter = name.substr(0, name.find(','));
    if ((country == "KP" || country == "KR") && shorter.ends_with(kKoreanCity))
        shorter.remove_suffix(kKoreanCity.size());
    if (IsOneOf(kCyrillic, country) && shorter.ends_with('\''))
        shorter.remove_suffix(1);
    return shorter.empty() ? name : shorter;
}

} // namespace

std::string CommonSpelling(std::string_view name, std::string_view country)
{
    if (!IsOneOf(kOtherScripts, country))
        return std::string(name);
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())});
    const icu::UnicodeString decomposed = icu::Normalizer2::getNFDInstance(status)->normalize(text, status);
    const icu::UnicodeString plain = icu::Normalizer2::getNFCInstance(status)->normalize(
        WithoutScientificMarks(decomposed, IsOneOf(kCyrillic, country)), status);
    std::string result;
    plain.toUTF8String(result);
    return std::string(WithoutEnd(U_FAILURE(status) || result.empty() ? name : result, country));
}

} // namespace beacond
