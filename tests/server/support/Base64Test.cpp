// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Base64.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(EncodeBase64, bytes_arePaddedToGroupsOfFour)
{
    const struct
    {
        std::string bytes;
        std::string text;
    } rows[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"\xFB\xFF\x00"s, "+/8A"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(beacond::EncodeBase64(row.bytes), row.text);
    }
}
