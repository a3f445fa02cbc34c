// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/IncomingMail.h"

#include "messages/AuthenticationResults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::HasSubstr;

namespace {

constexpr const char* kPath = "Return-Path: <aisha@example.org>\n";
constexpr const char* kPass =
    "Authentication-Results: mx.example.net; dmarc=pass (p=none) header.from=example.org\n";
constexpr const char* kRest = "From: Aisha <aisha@example.org>\nTo: signup@example.net\nSubject: test\n";

std::variant<IncomingText, MailRefusal> Read(const std::string& message)
{
    return ReadMail(message, "MX.example.net");
}

std::string Trusted(const std::string& more)
{
    return std::string(kPath) + "Received: by mx.example.net; Sun, 22 Nov 2026 10:00:00 +0000\n" + kPass +
           kRest + more;
}

std::string TextOf(const std::string& message)
{
    const auto read = Read(message);
    const auto* const text = std::get_if<IncomingText>(&read);
    return text == nullptr ? "(refused)" : text->text;
}

void ExpectRefusal(const std::string& message, MailRefusal refusal)
{
    const auto read = Read(message);
    const auto* const found = std::get_if<MailRefusal>(&read);
    EXPECT_TRUE(found != nullptr && *found == refusal) << message.substr(0, 300);
}

} // namespace

TEST(IncomingMail, personsMail_hasSenderSubjectAndText)
{
    const auto read = Read(Trusted("\nHello,\ntest\n"));
    const auto* const text = std::get_if<IncomingText>(&read);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->sender, (Address{AddressKind::Mail, "aisha@example.org"}));
    EXPECT_EQ(text->subject, "test");
    EXPECT_EQ(text->text, "Hello,\ntest\n");
}

TEST(IncomingMail, text_isDecoded)
{
    const std::string two = "MIME-Version: 1.0\nContent-Type: multipart/alternative; boundary=b\n\n--b\n";
    const struct
    {
        std::string message;
        std::string text;
    } rows[] = {
        {"MIME-Version: 1.0\nContent-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: base64\n\n"
         "dGVzdA==\n",
         "test"},
        {"MIME-Version: 1.0\nContent-Type: text/plain; charset=iso-8859-1\n"
         "Content-Transfer-Encoding: quoted-printable\n\narr=EAt\n",
         "arr\u00eat\n"},
        {"MIME-Version: 1.0\nContent-Type: text/plain; charset=none-such\n\narr\xeat\n", "arr\u00eat\n"},
        {two + "Content-Type: text/html\n\n<p>html</p>\n--b\nContent-Type: text/plain\n\nplain\n--b--\n",
         "plain"},
        {two + "Content-Type: text/html\n\n<p>test</p>\n--b--\n", "\ntest\n"},
        {two + "Content-Type: text/plain\nContent-Disposition: attachment\n\ntest\n--b--\n", ""},
        {two + "Content-Type: message/rfc822\n\nSubject: test\n\ntest\n--b--\n", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TextOf(Trusted(row.message)), row.text) << row.message;
    }
}

TEST(IncomingMail, envelopeSender_isTheServersOwn)
{
    ExpectRefusal(std::string(kPass) + kRest + "\ntest\n", MailRefusal::NoSender);
    ExpectRefusal("Return-Path: <>\n" + std::string(kPass) + kRest + "\ntest\n", MailRefusal::NoSender);
    ExpectRefusal(std::string("Received: by mx.example.net\n") + kPath + kPass + kRest + "\ntest\n",
                  MailRefusal::NoSender);
    ExpectRefusal("Return-Path: <>\n" + std::string(kPath) + kPass + kRest + "\ntest\n",
                  MailRefusal::NoSender);
    ExpectRefusal("Return-Path: <a@example.org\r b@example.org>\n" + std::string(kPass) + kRest + "\ntest\n",
                  MailRefusal::NoSender);
    ExpectRefusal("", MailRefusal::NoSender);
    ExpectRefusal(std::string(100, '\0'), MailRefusal::NoSender);
}

TEST(IncomingMail, mailOfPrograms_isRefused)
{
    for (const std::string header :
         {"Auto-Submitted: auto-replied", "auto-submitted: auto-generated (vacation)", "List-Id: <a.b>",
          "List-Unsubscribe: <mailto:a@b.c>", "Precedence: Bulk", "Precedence: list", "Precedence: junk"}) {
        ExpectRefusal(Trusted(header + "\n\ntest\n"), MailRefusal::Automatic);
    }
    EXPECT_EQ(TextOf(Trusted("Auto-Submitted: no\nPrecedence: normal\n\ntest\n")), "test\n");
    for (const std::string sender : {"MAILER-DAEMON", "owner-news", "news-request"}) {
        ExpectRefusal("Return-Path: <" + sender + "@example.org>\n" + kPass + kRest + "\ntest\n",
                      MailRefusal::Automatic);
    }
}

TEST(IncomingMail, authentication_isThatOfTheServersFirstResults)
{
    const std::string results = "Authentication-Results: mx.example.net; ";
    const std::string other = "Authentication-Results: mx.example.com; dmarc=pass header.from=example.org\n";
    const struct
    {
        const char* name;
        std::string headers;
        bool isRead;
    } rows[] = {
        {"pass", kPass, true},
        {"of a subdomain", results + "dmarc=pass header.from=mail.example.org\n", true},
        {"above another server's", kPass + other, true},
        {"below another server's", other + kPass, true},
        {"folded",
         "Authentication-Results:\n mx.example.net 1;\n\tspf=fail;\n dmarc = pass\n"
         " header.from = Example.ORG\n",
         true},
        {"none", "", false},
        {"another server's", other, false},
        {"fail", results + "dmarc=fail header.from=example.org\n", false},
        {"only DKIM", results + "dkim=pass header.d=example.org\n", false},
        {"forged below", results + "dmarc=fail header.from=example.org\n" + kPass, false},
        {"forged below a result without DMARC", results + "spf=pass\n" + kPass, false},
        {"another domain's", results + "dmarc=pass header.from=example.com\n", false},
        {"without a domain", results + "dmarc=pass\n", false},
        {"contradicting",
         results + "dmarc=fail header.from=example.org; dmarc=pass header.from=example.org\n", false},
        {"in a quoted address",
         results + "spf=pass smtp.mailfrom=\"a; dmarc=pass header.from=example.org\"@example.org\n", false},
        {"in a quoted address with a quotation mark",
         results + "spf=pass smtp.mailfrom=\"\\\"; dmarc=pass header.from=example.org; x=\"@example.org\n",
         false},
        {"in a comment", results + "spf=pass (; dmarc=pass header.from=example.org) smtp.helo=a\n", false},
        {"after an open comment", results + "spf=pass (a; dmarc=pass header.from=example.org\n", false},
        {"forged below a malformed one", results + "spf=pass smtp.mailfrom=\"a\n" + kPass, false},
        {"in nested comments", results + "spf=pass ((a) \\) ; dmarc=pass header.from=example.org )\n", false},
    };
    for (const auto& row : rows) {
        const auto read = Read(kPath + row.headers + kRest + "\ntest\n");
        EXPECT_EQ(std::holds_alternative<IncomingText>(read), row.isRead) << row.name;
        if (!row.isRead && std::holds_alternative<MailRefusal>(read)) {
            EXPECT_EQ(std::get<MailRefusal>(read), MailRefusal::NotAuthenticated) << row.name;
        }
    }
}

// The envelope sender is a third person, the header From the sender's own domain.
TEST(IncomingMail, victimAsEnvelopeSender_isRefused)
{
    ExpectRefusal("Return-Path: <victim@example.com>\n" + std::string(kPass) + kRest + "\ntest\n",
                  MailRefusal::NotAuthenticated);
}

// The sender repeats a signed mail of an own address at the same domain.
TEST(IncomingMail, fromOfAnotherAddress_isRefused)
{
    const std::string victim = "Return-Path: <victim@example.org>\n" + std::string(kPass);
    ExpectRefusal(victim + kRest + "\ntest\n", MailRefusal::NotAuthenticated);
    const struct
    {
        std::string from;
        bool isRead;
    } rows[] = {
        {"From: victim@example.org\n", true},
        {"FROM : \"Aisha, aisha@example.org\" (a@b) <Victim@Example.org>\n", true},
        {"From: =?utf-8?q?A=C3=AFsha?=\n <victim@example.org>\n", true},
        {"", false},
        {"From: victim@example.org\nFrom: aisha@example.org\n", false},
        {"From: aisha@example.org\nFrom: victim@example.org\n", false},
        {"From: victim@example.org, aisha@example.org\n", false},
        {"From: aisha@example.org, <victim@example.org>\n", false},
        {"From: aisha@example.org <victim@example.org>\n", false},
        {"From: <aisha@example.org> <victim@example.org>\n", false},
        {"From: <victim@example.org> aisha@example.org\n", false},
        {"From: group: victim@example.org;\n", false},
        {"From: <@example.org:victim@example.org>\n", false},
        {"From: \"victim@example.org\n", false},
        {"From: (victim@example.org\n", false},
        {"From: victim@example.org\raisha@example.org\n", false},
    };
    for (const auto& row : rows) {
        const auto read = Read(victim + row.from + "Subject: STOP\n\nSTOP\n");
        EXPECT_EQ(std::holds_alternative<IncomingText>(read), row.isRead) << row.from;
    }
}

TEST(IncomingMail, giantAndNestedMails_areReadInTimeAndBounded)
{
    std::string nested = "MIME-Version: 1.0\n";
    for (int i = 0; i < 4'000; ++i) {
        const std::string boundary = std::to_string(i);
        nested += "Content-Type: multipart/mixed; boundary=" + boundary + "\n\n--" + boundary + "\n";
    }
    nested += "Content-Type: text/plain\n\ntest\n";
    std::string parts = "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b\n\n";
    for (int i = 0; i < 10'000; ++i) {
        parts += "--b\nContent-Type: image/png\n\nx\n";
    }
    parts += "--b\nContent-Type: text/plain\n\ntest\n--b--\n";
    std::string headers;
    for (int i = 0; i < 8'000; ++i) {
        headers += "X-A: b\n";
    }
    std::string encoded = "Subject: =?utf-8?q?";
    encoded += std::string(200'000, 'x') + "?=\n\ntest\n";
    std::string groups = "To: ";
    for (int i = 0; i < 31'000; ++i) {
        groups += "a:";
    }
    const std::string attached = "MIME-Version: 1.0\nContent-Type: multipart/mixed; "
                                 "boundary=b\n\n--b\nContent-Type: text/plain\n\ntest\n"
                                 "--b\nContent-Type: message/rfc822\n\n";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(TextOf(Trusted(groups + "\n\ntest\n")), "test\n");
    EXPECT_EQ(TextOf(Trusted(attached + groups + "\n\ntest\n--b--\n")), "test");
    EXPECT_EQ(TextOf(Trusted(nested)), "");
    EXPECT_EQ(TextOf(Trusted(parts)), "");
    EXPECT_EQ(TextOf(Trusted(headers + "\ntest\n")), "test\n");
    EXPECT_LE(TextOf(Trusted(encoded)).size(), 16'384U);
    EXPECT_EQ(TextOf(Trusted("\n" + std::string(50'000'000, 'a'))).size(), 16'384U);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}
