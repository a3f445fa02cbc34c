// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pages/Pages.h"

#include "store/Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::HasSubstr;

// A release may come from another organisation, and a mail address may contain most of these characters.
TEST(Pages, charactersOfMarkup_areEscaped)
{
    EXPECT_THAT(DownloadsPage({{"1<", "6>", "https://a.example/?\"<>&'"}}).body,
                HasSubstr("<li><a href=\"https://a.example/?&quot;&lt;&gt;&amp;&#39;\">"
                          "Dusk Beacon 1&lt;.6&gt;</a></li>\n"));
    EXPECT_THAT(HomePage(true, "\"<>&'@a.example").body,
                HasSubstr("<p>Or write to &quot;&lt;&gt;&amp;&#39;@a.example with the word"));
}
