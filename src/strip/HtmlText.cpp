// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "strip/HtmlText.h"

#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>
#include <utility>

namespace {

bool IsText(UChar32 code)
{
    const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    const bool isLayoutMark = code == 0x2028 || code == 0x2029 || code == 0xFFFC;
    return !isControl && !isLayoutMark && U_IS_UNICODE_CHAR(code);
}

bool IsLetterOrDigit(char character)
{
    const char lower = LowerCase(character);
    return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9');
}

std::string Utf8(UChar32 code)
{
    std::string text;
    icu::UnicodeString(code).toUTF8String(text);
    return text;
}

struct Reference
{
    UChar32 code = ' ';
    /// 0 if there is no reference.
    std::size_t length = 0;
};

// "&#38;" or "&#x26;", with or without the ";". Source: HTML standard, 13.2.5.75 to 13.2.5.80.
Reference NumericReference(std::string_view rest)
{
    if (!rest.starts_with("&#")) {
        return {};
    }
    const bool isHexadecimal = rest.size() > 2 && (rest[2] == 'x' || rest[2] == 'X');
    const char* const first = rest.data() + (isHexadecimal ? 3 : 2);
    const char* const end = rest.data() + rest.size();
    std::uint32_t number = 0;
    const auto [last, error] = std::from_chars(first, end, number, isHexadecimal ? 16 : 10);
    if (last == first) {
        return {};
    }
    const auto code = static_cast<UChar32>(std::min<std::uint32_t>(number, 0x110000));
    const auto length = static_cast<std::size_t>(last - rest.data()) + (last != end && *last == ';' ? 1 : 0);
    return {error == std::errc() && IsText(code) ? code : ' ', length};
}

// A name without its ";" counts too, unless it may be the beginning of a parameter's name.
// Source: HTML standard, 13.2.5.73.
Reference NamedReference(std::string_view rest)
{
    constexpr std::pair<std::string_view, char> kNames[] = {
        {"&amp", '&'}, {"&lt", '<'}, {"&gt", '>'}, {"&quot", '"'}, {"&apos", '\''}};
    for (const auto& [name, character] : kNames) {
        if (rest.starts_with(name)) {
            const char next = rest.size() > name.size() ? rest[name.size()] : ' ';
            const bool isName = next != '=' && !IsLetterOrDigit(next);
            return isName ? Reference{character, name.size() + (next == ';' ? 1 : 0)} : Reference{};
        }
    }
    return {};
}

std::string EscapedCharacter(char character)
{
    switch (character) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return {character};
    }
}

} // namespace

char LowerCase(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string LowerCase(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char character) { return LowerCase(character); });
    return lower;
}

std::size_t Utf16Units(std::string_view text)
{
    std::size_t units = 0;
    for (const char byte : text) {
        units += U8_IS_TRAIL(byte) ? 0 : 1;
        // The first byte of four: two units.
        units += static_cast<unsigned char>(byte) >= 0xF0 ? 1 : 0;
    }
    return units;
}

std::string SafeText(std::string_view text)
{
    std::string safe;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '&') {
            safe += EscapedCharacter(text[at++]);
        } else if (const Reference number = NumericReference(text.substr(at)); number.length > 0) {
            // Keep a numeric reference, so that "&" and "<" do not become markup.
            safe += number.code == ' ' ? " " : "&#" + std::to_string(number.code) + ';';
            at += number.length;
        } else {
            ++at;
            // Qt's rich text accepts numeric references that a browser does not.
            safe += text.substr(at).starts_with('#') ? "&amp;" : "&";
        }
    }
    return safe;
}

std::string AttributeValue(std::string_view source)
{
    std::string value;
    for (std::size_t mark = source.find('&'); mark != std::string_view::npos; mark = source.find('&')) {
        value += source.substr(0, mark);
        source.remove_prefix(mark);
        const Reference number = NumericReference(source);
        const Reference reference = number.length > 0 ? number : NamedReference(source);
        value += reference.length > 0 ? Utf8(reference.code) : "&";
        source.remove_prefix(std::max<std::size_t>(reference.length, 1));
    }
    return value += source;
}

std::string Escaped(std::string_view value)
{
    std::string escaped;
    for (const char character : value) {
        escaped += character == '&' ? "&amp;" : EscapedCharacter(character);
    }
    return escaped;
}

std::string WithoutLayoutMarks(const std::string& html)
{
    icu::UnicodeString units = icu::UnicodeString::fromUTF8(html);
    for (std::int32_t at = 0; at < units.length(); ++at) {
        if (!IsText(units[at]) && !U16_IS_SURROGATE(units[at])) {
            units.setCharAt(at, u' ');
        }
    }
    std::string text;
    return units.toUTF8String(text);
}
