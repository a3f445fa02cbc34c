// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Utf8.h"

#include <array>

namespace {

// The characters of windows-1252 from 0x80 to 0x9F, all of them below U+FFFF.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

void AppendUtf8(std::string& text, char16_t character)
{
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (character >> 12));
        text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
}

// The second byte shows whether a sequence is overlong, a surrogate or too high (The Unicode Standard, table
// 3-7); the other bytes are 80 to BF.
bool IsSecondByte(unsigned char first, unsigned char second)
{
    switch (first) {
    case 0xE0:
        return second >= 0xA0 && second <= 0xBF;
    case 0xED:
        return second >= 0x80 && second <= 0x9F;
    case 0xF0:
        return second >= 0x90 && second <= 0xBF;
    case 0xF4:
        return second >= 0x80 && second <= 0x8F;
    default:
        return second >= 0x80 && second <= 0xBF;
    }
}

std::size_t LengthByFirstByte(unsigned char first)
{
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        return 3;
    }
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

} // namespace

namespace beacond {

std::size_t Utf8SequenceLength(std::string_view text)
{
    if (text.empty()) {
        return 0;
    }
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const std::size_t length = LengthByFirstByte(byte(0));
    if (length > text.size() || (length > 1 && !IsSecondByte(byte(0), byte(1)))) {
        return 0;
    }
    for (std::size_t index = 2; index < length; ++index) {
        if ((byte(index) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

bool IsValidUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = Utf8SequenceLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string FromWindows1252(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        const bool isInTable = byte >= 0x80 && byte <= 0x9F;
        AppendUtf8(text, isInTable ? kWindows1252[byte - 0x80U] : char16_t{byte});
    }
    return text;
}

} // namespace beacond
