// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MailMessage.h"

#include "messages/Channel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::HasSubstr;
using testing::StartsWith;

TEST(MailMessage, textInAnotherScript_isEncoded)
{
    const std::chrono::sys_seconds date{std::chrono::seconds(1'800'000'000)};
    const std::string mail = MailText({"beacon@mosque.example", ""},
                                      {"a@example.org", "\xC3\x9C", "\xC3\xA9\nb", "text-1", "de"}, date);
    EXPECT_THAT(mail, StartsWith("Date: Fri, 15 Jan 2027 08:00:00 +0000\r\n"));
    EXPECT_THAT(mail, HasSubstr("\r\nSubject: =?UTF-8?B?w5w=?=\r\n"));
    EXPECT_THAT(mail, HasSubstr("\r\nContent-Transfer-Encoding: base64\r\n\r\nw6kNCmINCg==\r\n"));
    EXPECT_THAT(mail, testing::Not(HasSubstr("List-Unsubscribe")));
}

TEST(MailMessage, longSubject_isFoldedBetweenCharacters)
{
    std::string subject;
    for (int i = 0; i < 40; ++i) {
        subject += "\xD8\xA7";
    }
    EXPECT_EQ(HeaderText(subject), "=?UTF-8?B?2KfYp9in2KfYp9in2KfYp9in2KfYp9in2KfYp9in2KfYp9in2KfYp9in?=\r\n "
                                   "=?UTF-8?B?2KfYp9in2KfYp9in2KfYp9in2KfYp9in2KfYp9in2KfYp9in2Kc=?=");
    EXPECT_EQ(HeaderText("=?UTF-8?B?YQ==?="), "=?UTF-8?B?PT9VVEYtOD9CP1lRPT0/PQ==?=");
    EXPECT_EQ(HeaderText("a\r\nb"), "a  b");
}
