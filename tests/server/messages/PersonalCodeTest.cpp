// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/PersonalCode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::MatchesRegex;

TEST(PersonalCode, new_isSixteenDigitsInGroupsOfFour_andAlwaysDifferent)
{
    const std::string code = MakePersonalCode();

    EXPECT_THAT(code, MatchesRegex("[0-9]{4} [0-9]{4} [0-9]{4} [0-9]{4}"));
    EXPECT_NE(code, MakePersonalCode());
    EXPECT_TRUE(DigitsOfPersonalCode(code));
}

TEST(PersonalCode, typed_inAnyScriptAndGrouping_isTheSixteenDigits)
{
    for (const std::string typed :
         {"1234567890123456", "1234 5678 9012 3456", "1234-5678-9012-3456", "  1234 5678\t90123456 ",
          "1234\xE2\x80\x93"
          "5678\xC2\xA0"
          "9012\xE2\x80\x8B"
          "3456",
          "\u0661\u0662\u0663\u0664 \u0665\u0666\u0667\u0668 \u0669\u0660\u0661\u0662 "
          "\u0663\u0664\u0665\u0666",
          "\u06F1\u06F2\u06F3\u06F4\u06F5\u06F6\u06F7\u06F8\u06F9\u06F0\u06F1\u06F2\u06F3\u06F4\u06F5\u06F6",
          "\uFF11\uFF12\uFF13\uFF14567890123456"}) {
        EXPECT_EQ(DigitsOfPersonalCode(typed), "1234567890123456") << typed;
    }
}

TEST(PersonalCode, otherTypedText_isRefused)
{
    for (const std::string& typed : {std::string(), std::string("123456789012345"),
                                     std::string("12345678901234567"), std::string("1234 5678 9012 345x"),
                                     std::string("1234567890123456'"), std::string("123456789012345\xFF"),
                                     std::string("\xD9"), std::string(1'000'000, ' ') + "1234567890123456"}) {
        EXPECT_FALSE(DigitsOfPersonalCode(typed)) << typed.substr(0, 40);
    }
}
