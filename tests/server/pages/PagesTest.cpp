// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pages/Pages.h"

#include "store/Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// A release may come from another organisation, and a mail address may contain most of these characters.
TEST(Pages, charactersOfMarkup_areEscaped)
{
    EXPECT_THAT(DownloadsPage({{"1<", "6>", "https://a.example/?\"<>&'"}}).body,
                HasSubstr("<li><a href=\"https://a.example/?&quot;&lt;&gt;&amp;&#39;\">"
                          "Dusk Beacon 1&lt;.6&gt;</a></li>\n"));
    const SignupOffer offer{.mail = true, .signupAddress = "\"<>&'@a.example"};
    EXPECT_THAT(HomePage(offer).body,
                HasSubstr(" to &quot;&lt;&gt;&amp;&#39;@a.example with the word \"test\"."));
    EXPECT_THAT(HelpPage(offer).body,
                HasSubstr(" to &quot;&lt;&gt;&amp;&#39;@a.example with the word \"test\"."));
}

TEST(Pages, signup_isOfferedForTheKindsThatAreServed)
{
    EXPECT_THAT(HomePage({}).body, HasSubstr("This service sends no messages."));
    EXPECT_THAT(HomePage({.mail = true}).body, HasSubstr("type=\"email\""));
    EXPECT_THAT(HomePage({.ntfy = true}).body, HasSubstr(">Ntfy topic (https://...)<"));
    EXPECT_THAT(HomePage({.mail = true, .ntfy = true}).body,
                HasSubstr(">Mail address or ntfy topic (https://...)<"));
    EXPECT_THAT(HomePage({.mail = true}).body, Not(HasSubstr("invite")));
    const std::string invited =
        HomePage({.mail = true, .needsInvite = true, .signupAddress = "a@b.example"}).body;
    EXPECT_THAT(invited, HasSubstr("name=\"invite\""));
    EXPECT_THAT(invited, HasSubstr("with the word \"test\" and your invite word."));
    const std::string onlyByText = HomePage({.signupAddress = "a@b.example"}).body;
    EXPECT_THAT(onlyByText, AllOf(HasSubstr("to a@b.example"), Not(HasSubstr("<form"))));
    EXPECT_THAT(HelpPage({}).body, Not(HasSubstr("with the word")));
}
