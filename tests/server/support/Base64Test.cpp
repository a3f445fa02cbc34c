// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Base64.h"

#include <gtest/gtest.h>

#include <vector>

using namespace std::string_literals;

namespace {

// RFC 4648, section 10, and a row for each character that the alphabets do not share.
struct Row
{
    std::string bytes;
    std::string text;
    std::string urlText;
};

const std::vector<Row>& Rows()
{
    static const std::vector<Row> rows = {
        {"", "", ""},
        {"f", "Zg==", "Zg"},
        {"fo", "Zm8=", "Zm8"},
        {"foo", "Zm9v", "Zm9v"},
        {"foob", "Zm9vYg==", "Zm9vYg"},
        {"fooba", "Zm9vYmE=", "Zm9vYmE"},
        {"foobar", "Zm9vYmFy", "Zm9vYmFy"},
        {"\xFB\xFF\x00"s, "+/8A", "-_8A"},
    };
    return rows;
}

} // namespace

TEST(Base64, bytes_goThereAndBack)
{
    for (const Row& row : Rows()) {
        EXPECT_EQ(beacond::EncodeBase64(row.bytes), row.text);
        EXPECT_EQ(beacond::DecodeBase64(row.text), row.bytes) << row.text;
        EXPECT_EQ(beacond::EncodeBase64Url(row.bytes), row.urlText);
        EXPECT_EQ(beacond::DecodeBase64Url(row.urlText), row.bytes) << row.urlText;
    }
}

TEST(DecodeBase64, otherTexts_areRefused)
{
    for (const char* text :
         {"Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Zm9v\n", "Zm 9v", "-_8A", "Zh==", "Zm9=", "=Zg="}) {
        EXPECT_EQ(beacond::DecodeBase64(text), std::nullopt) << text;
    }
}

TEST(DecodeBase64Url, otherTexts_areRefused)
{
    for (const char* text : {"Z", "Zg==", "Zh", "Zm9", "+/8A", "Zm9v\n", "Zm9vY"}) {
        EXPECT_EQ(beacond::DecodeBase64Url(text), std::nullopt) << text;
    }
}
