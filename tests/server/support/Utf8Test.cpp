// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Utf8.h"

#include <gtest/gtest.h>

#include <vector>

using namespace std::string_literals;

TEST(IsValidUtf8, sequences_areValidAsInTheStandard)
{
    struct Row
    {
        const char* name;
        std::string text;
        bool isValid;
    };
    const std::vector<Row> rows = {
        {"empty", "", true},
        {"ASCII with NUL", "a\0b"s, true},
        {"two bytes", "\xC3\xA9", true},
        {"first of two bytes", "\xC2\x80", true},
        {"three bytes", "\xE2\x82\xAC", true},
        {"below the surrogates", "\xED\x9F\xBF", true},
        {"U+FFFF", "\xEF\xBF\xBF", true},
        {"highest", "\xF4\x8F\xBF\xBF", true},
        {"a byte of windows-1252", "caf\xE9", false},
        {"lone continuation", "\x80", false},
        {"overlong slash", "\xC0\xAF", false},
        {"overlong in three bytes", "\xE0\x9F\xBF", false},
        {"overlong in four bytes", "\xF0\x8F\xBF\xBF", false},
        {"surrogate", "\xED\xA0\x80", false},
        {"too high", "\xF4\x90\x80\x80", false},
        {"first byte F5", "\xF5\x80\x80\x80", false},
        {"cut off", "a\xE2\x82", false},
        {"broken in the third byte", "\xE2\x82\x28", false},
        {"broken in the fourth byte", "\xF0\x9F\x95\x28", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(beacond::IsValidUtf8(row.text), row.isValid) << row.name;
    }
}

TEST(Utf8SequenceLength, firstSequence_answersItsLength)
{
    EXPECT_EQ(beacond::Utf8SequenceLength(""), 0U);
    EXPECT_EQ(beacond::Utf8SequenceLength("ab"), 1U);
    EXPECT_EQ(beacond::Utf8SequenceLength("\xC3\xA9z"), 2U);
    EXPECT_EQ(beacond::Utf8SequenceLength("\xE2\x82\xACz"), 3U);
    EXPECT_EQ(beacond::Utf8SequenceLength("\xF0\x9F\x95\x8Cz"), 4U);
}

TEST(FromWindows1252, everyKindOfByte_becomesItsCharacter)
{
    EXPECT_EQ(beacond::FromWindows1252("K\xF6ln \x80 \x9F"), "Köln € Ÿ");
    EXPECT_EQ(beacond::FromWindows1252("\x81\x8D\x8F\x90\x9D"), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(beacond::FromWindows1252("\xA0\xFF"), "\u00A0ÿ");
    EXPECT_EQ(beacond::FromWindows1252("\x93q\x94\x96"), "“q”–");
}
