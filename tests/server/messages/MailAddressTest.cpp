// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MailAddress.h"

#include <gtest/gtest.h>

using namespace beacond;

TEST(MailAddress, addresses_areTrimmedAndLowerCase)
{
    EXPECT_EQ(NormalisedMailAddress(" Some.One+tag@Mail.Example.ORG\r\n"), "some.one+tag@mail.example.org");
    EXPECT_EQ(NormalisedMailAddress("o'neil@a-b.example"), "o'neil@a-b.example");
}

TEST(MailAddress, otherTexts_areRefused)
{
    for (const std::string& text : {std::string(),
                                    std::string("  "),
                                    std::string("someone"),
                                    std::string("@example.org"),
                                    std::string("a@"),
                                    std::string("a@b@example.org"),
                                    std::string("a b@example.org"),
                                    std::string("a@example"),
                                    std::string("a@-b.org"),
                                    std::string("a@b..org"),
                                    std::string("a..b@b.org"),
                                    std::string("a@[127.0.0.1]"),
                                    std::string("a@127.0.0.1"),
                                    std::string("\"a\"@example.org"),
                                    std::string("a@b.org\nBcc: c@d.org"),
                                    std::string("a@b.org,c@d.org"),
                                    std::string("<a@b.org>"),
                                    std::string("-oq@b.org"),
                                    std::string("`x`@b.org"),
                                    std::string("a|b@b.org"),
                                    std::string("$a@b.org"),
                                    std::string("a\0@b.org", 8),
                                    std::string("\xC3\xA9@b.org"),
                                    std::string(65, 'a') + "@b.org",
                                    std::string("a@") + std::string(64, 'b') + ".org",
                                    std::string(100'000, 'a') + "@b.org"}) {
        EXPECT_FALSE(NormalisedMailAddress(text)) << text.substr(0, 80);
    }
}
