// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/IncomingText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;

TEST(IncomingText, wish_isFoundInSubjectAndText)
{
    const std::string laterLines = "Hello\n\nhere is the word: \"TEST\".\n";
    const struct
    {
        std::string subject;
        std::string text;
        Wish wish;
    } rows[] = {
        {"", "test", Wish::SignUp},
        {"", " Test! \r\n", Wish::SignUp},
        {"\u201ctest\u201d", "", Wish::SignUp},
        {"", "\uff34\uff25\uff33\uff34", Wish::SignUp}, // of a full-width keyboard
        {"", laterLines, Wish::SignUp},
        {"Re: test", "", Wish::SignUp},
        {"", "", Wish::None},
        {"Hello", "testing contest", Wish::None},
        {"", "thanks\n> send the word test\n", Wish::None},
        {"", "thanks\n-- \ntest department\n", Wish::None},
        {"", std::string(2'000, 'a') + " test", Wish::None},
        {"", "STOP", Wish::Stop},
        {"", "\n Stop.\n", Wish::Stop},
        {"Re: stop", "", Wish::Stop},
        {"AW: Dusk Beacon: your personal code", "unsubscribe\n\nOn Monday someone wrote:\n", Wish::Stop},
        {"", "stop test", Wish::SignUp},
        {"test", "stop", Wish::Stop},
        {"", "Please stop!", Wish::Stop},
        {"", "ARR\u00caT", Wish::Stop},
        {"", "\u062a\u0648\u0642\u0641", Wish::Stop},
        {"", "\u0625\u0644\u063a\u0627\u0621", Wish::Stop},
        {"", "I can't stop thinking of it", Wish::None},
        {"", "Hello\nstop", Wish::None},
        {"", "\xff\xfe test", Wish::SignUp},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WishOf(row.subject, row.text), row.wish) << row.subject << " | " << row.text;
    }
}

TEST(IncomingText, words_areSeparatedByWhiteSpaceAndLimited)
{
    EXPECT_THAT(WordsOf(" test\r\n  Juma-7 "), testing::ElementsAre("test", "Juma-7"));
    std::string many;
    for (int i = 0; i < 200; ++i) {
        many += "a ";
    }
    EXPECT_EQ(WordsOf(many).size(), 100U);
}
