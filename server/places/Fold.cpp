// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Fold.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace beacond {

namespace {

struct Letter
{
    UChar32 from;
    std::string_view to;
};

// Letters without a decomposition, with the letters that people type for them. The Arabic ones are written
// differently in Persian and Urdu.
constexpr std::array kLetters = {
    Letter{0x00E6, "ae"}, // æ
    Letter{0x00F0, "d"},  // ð
    Letter{0x00F8, "o"},  // ø
    Letter{0x00FE, "th"}, // þ
    Letter{0x0111, "d"},  // đ
    Letter{0x0127, "h"},  // ħ
    Letter{0x0131, "i"},  // ı
    Letter{0x0142, "l"},  // ł
    Letter{0x014B, "n"},  // ŋ
    Letter{0x0153, "oe"}, // œ
    Letter{0x0259, "e"},  // ə
    Letter{0x0629, "ه"},  // ة
    Letter{0x0640, ""},   // tatweel
    Letter{0x0649, "ي"},  // ى
    Letter{0x0671, "ا"},  // ٱ
    Letter{0x06A9, "ك"},  // ک
    Letter{0x06BE, "ه"},  // ھ
    Letter{0x06C1, "ه"},  // ہ
    Letter{0x06CC, "ي"},  // ی
};
static_assert(std::is_sorted(kLetters.begin(), kLetters.end(),
                             [](const Letter& a, const Letter& b) { return a.from < b.from; }));

constexpr std::array<UChar32, 8> kApostrophes = {'\'', '`', 0x00B4, 0x2018, 0x2019, 0x02BB, 0x02BC, 0x02BE};

bool IsApostrophe(UChar32 c)
{
    return std::find(kApostrophes.begin(), kApostrophes.end(), c) != kApostrophes.end() ||
           u_charType(c) == U_MODIFIER_LETTER;
}

bool IsLetterOrDigit(UChar32 c)
{
    return u_isalnum(c) || u_charType(c) == U_NON_SPACING_MARK || u_charType(c) == U_COMBINING_SPACING_MARK;
}

bool IsAccent(UChar32 c)
{
    return u_getCombiningClass(c) != 0;
}

/// The hiragana of a katakana letter, other letters unchanged: people type either.
UChar32 HiraganaOf(UChar32 c)
{
    constexpr UChar32 kFirstKatakana = 0x30A1;
    constexpr UChar32 kLastKatakana = 0x30F6;
    constexpr UChar32 kDistance = 0x60;
    return c >= kFirstKatakana && c <= kLastKatakana ? c - kDistance : c;
}

void AppendFolded(UChar32 c, std::string& text)
{
    const auto letter = std::lower_bound(kLetters.begin(), kLetters.end(), c,
                                         [](const Letter& l, UChar32 wanted) { return l.from < wanted; });
    if (letter != kLetters.end() && letter->from == c) {
        text.append(letter->to);
        return;
    }
    std::array<std::uint8_t, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes.data(), length, HiraganaOf(c));
    std::for_each_n(bytes.begin(), length, [&text](std::uint8_t b) { text.push_back(static_cast<char>(b)); });
}

/// Collects letters and the offsets of words.
class Folding
{
public:
    /// Adds the next character; `startsCapital` says whether the name has a capital letter here.
    void Take(UChar32 c, bool startsCapital)
    {
        if (IsAccent(c))
            return;
        if (IsApostrophe(c)) {
            m_afterApostrophe = true;
            return;
        }
        if (!IsLetterOrDigit(c)) {
            m_afterGap = true;
            return;
        }
        // "L'Aquila" has two words, "Sana'a" one.
        const bool isWord = m_afterGap || (m_afterApostrophe && startsCapital);
        if (isWord && !m_name.text.empty())
            m_name.words.push_back(m_name.text.size());
        m_afterGap = false;
        m_afterApostrophe = false;
        AppendFolded(c, m_name.text);
    }

    FoldedName Result() && { return std::move(m_name); }

private:
    FoldedName m_name;
    bool m_afterGap = false;
    bool m_afterApostrophe = false;
};

FoldedName FoldAscii(std::string_view name)
{
    Folding folding;
    for (const char c : name) {
        const bool capital = c >= 'A' && c <= 'Z';
        folding.Take(capital ? c - 'A' + 'a' : c, capital);
    }
    return std::move(folding).Result();
}

} // namespace

FoldedName FoldName(std::string_view name)
{
    if (std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return FoldAscii(name);
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* decompose = icu::Normalizer2::getNFKDInstance(status);
    icu::UnicodeString text =
        icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())});
    if (U_SUCCESS(status))
        text = decompose->normalize(text, status);
    Folding folding;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 c = text.char32At(i);
        if (c == 0xFFFD)
            continue;
        // Full case folding may yield several characters: "ß" is "ss".
        icu::UnicodeString folded(c);
        folded.foldCase();
        for (std::int32_t j = 0; j < folded.length(); j = folded.moveIndex32(j, 1))
            folding.Take(folded.char32At(j), j == 0 && u_isupper(c));
    }
    return std::move(folding).Result();
}

std::string Fold(std::string_view name)
{
    return FoldName(name).text;
}

std::size_t CountLetters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace beacond
