// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/Query.h"

#include <gtest/gtest.h>

#include <vector>

using namespace std::string_literals;
using beacond::Query;

TEST(Query, valueOfCity_isReadInTheFormOfTheProgram)
{
    struct Row
    {
        const char* name;
        std::string query;
        std::string city;
    };
    const std::vector<Row> rows = {
        {"none", "", ""},
        {"missing", "dist=x&aid=", ""},
        {"empty", "city=&dist=x", ""},
        {"without an equals sign", "city&dist=x", ""},
        {"between others", "a=1&city=Ma&b=2", "Ma"},
        {"other case of the name", "City=Ma", ""},
        {"an escape in the name", "c%69ty=Ma", ""},
        {"a name that begins alike", "city2=no&city=Ma", "Ma"},
        {"twice", "city=Ma&city=Mb", "Ma"},
        {"empty parameters", "&&=x&city=Ma", "Ma"},
        {"plus", "city=A+B", "A+B"},
        {"equals signs", "city=a=b==", "a=b=="},
        {"number sign", "city=a#b", "a#b"},
        {"question mark", "city=a?b", "a?b"},
        {"raw marks", "city=\"<>\\^{|}[]", "\"<>\\^{|}[]"},
        {"escapes", "city=%41%6a%6A", "Ajj"},
        {"decoded once", "city=%2541", "%41"},
        {"an escaped ampersand", "city=a%26dist=b", "a&dist=b"},
        {"no hexadecimal digits", "city=%zz%4g%g4", "%zz%4g%g4"},
        {"cut off", "city=%4", "%4"},
        {"lone percent sign", "city=100%", "100%"},
        {"sign in an escape", "city=%+4%-4% 4", "%+4%-4% 4"},
        {"UTF-8", "city=%D9%85%D9%83%D8%A9", "مكة"},
        {"raw UTF-8", "city=مكة", "مكة"},
        {"windows-1252", "city=K%F6ln", "Köln"},
        {"raw windows-1252", "city=K\xF6ln", "Köln"},
        {"mixed codes", "city=%C3%A9%F6", "Ã©ö"},
        {"no character of windows-1252", "city=%81", "\uFFFD"},
        {"control characters", "city=a%00b%0D%0A%09c%7F", "a b   c "},
        {"spaces stay", "city=%20Ma%20", " Ma "},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Query(row.query).Value("city"), row.city) << row.name;
    }
}

TEST(Query, bodyOfAForm_readsPlusAsSpace)
{
    const Query form("address=a+b%2Bc&kind=mail", Query::Plus::Space);
    EXPECT_EQ(form.Value("address"), "a b+c");
    EXPECT_EQ(form.Value("kind"), "mail");
}

TEST(Query, parametersBeyondThe32nd_areIgnored)
{
    std::string text;
    for (int number = 1; number <= 33; ++number) {
        text += "p" + std::to_string(number) + "=v&";
    }
    EXPECT_EQ(Query(text).Value("p32"), "v");
    EXPECT_EQ(Query(text).Value("p33"), "");
}
