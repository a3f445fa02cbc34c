// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/TextFiles.h"

#include <gtest/gtest.h>

using namespace beacond;

namespace {

std::string Described(const std::optional<IncomingText>& text)
{
    return text ? text->sender.text + ' ' + text->text : "(none)";
}

std::string Gammu(const std::string& name, const std::string& content)
{
    return Described(ReadGammuFile(name, content));
}

} // namespace

TEST(TextFiles, gammuFile_hasItsSenderInTheName)
{
    const std::string name = "IN20261122_203045_00_+442079460958_00.txt";
    EXPECT_EQ(Gammu(name, "test"), "+442079460958 test");
    EXPECT_EQ(Gammu(name, "arr\xEAt"), "+442079460958 arr\u00eat");
    EXPECT_EQ(Gammu(name, std::string("\xFE\xFF\0t\0e\0s\0t", 10)), "+442079460958 test");
    EXPECT_EQ(Gammu(name, std::string("\xFF\xFEt\0e\0s\0t\0", 10)), "+442079460958 test");
    EXPECT_EQ(Gammu(name, std::string("\xFE\xFF\xD8\0\0t\0", 7)), "+442079460958 \uFFFDt");
    for (const char* const other :
         {"IN20261122_203045_00_+442079460958_01.txt", "IN20261122_203045_00_02079460958_00.txt",
          "IN20261122_203045_00_Provider_00.txt", "IN20261122_203045_00_+442079460958_00.bin",
          "OUT20261122_203045_00_+442079460958_00.txt", "IN__+442079460958_00.txt", "IN_.txt", ".txt", ""}) {
        EXPECT_EQ(Gammu(other, "test"), "(none)") << other;
    }
}

TEST(TextFiles, smstoolsFile_hasItsSenderInTheHeader)
{
    const std::string from = "From: 442079460958\nFrom_TOA: 91 international, ISDN/telephone\n";
    const struct
    {
        std::string content;
        std::string expected;
    } rows[] = {
        {from + "Alphabet: ISO\nLength: 4\n\ntest", "+442079460958 test"},
        {"From: +442079460958\r\nAlphabet: UTF-8\r\n\r\n\u0637", "+442079460958 \u0637"},
        {from + "Alphabet: ISO\n\narr\xEAt", "+442079460958 arr\u00eat"},
        {from + std::string("Alphabet: UCS2\n\n\0t\0e\0s\0t", 24), "+442079460958 test"},
        {from + "\nFrom: +441111111111\n\ntest", "+442079460958 From: +441111111111\n\ntest"},
        {from + "Alphabet: binary\n\ntest", "(none)"},
        {from + "Report: yes\n\ntest", "(none)"},
        {"From: 02079460958\nFrom_TOA: 81 unknown\n\ntest", "(none)"},
        {"From: Provider\nFrom_TOA: D0 alphanumeric\n\ntest", "(none)"},
        {from, "(none)"},
        {"", "(none)"},
        {"\n\n", "(none)"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Described(ReadSmstoolsFile(row.content)), row.expected) << row.content;
    }
}
