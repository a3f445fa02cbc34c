// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Attacks on the real program; docs/service-abuse.md has all of them.
#include "server/app/ProviderFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

class AbuseTest : public ProviderFixture
{
protected:
    /// A Maildir, and a provider's hook for text messages that are answered into a folder.
    void ConfigureRoads()
    {
        fs::create_directories(folder / "mail/new");
        fs::create_directories(folder / "mail/tmp");
        Write(folder / "secret", "0123456789abcdef");
        Configure("[messages]\nchannels = [\"spool\", \"phone\"]\nmaildir = \"mail\"\n"
                  "mail_server = \"mx.example.net\"\nsms_prefixes = [\"+44\"]\n"
                  "[[messages.channel]]\nname = \"phone\"\ntype = \"spool\"\nkind = \"sms\"\n"
                  "folder = \"phone\"\n"
                  "[[messages.hook]]\nname = \"provider\"\nproof = \"secret\"\nheader = \"X-Secret\"\n"
                  "secret_file = \"secret\"\nsender = \"From\"\ntext = \"Body\"\nid = \"Id\"\n");
    }
    static std::string PostHook(unsigned short port, const std::string& body)
    {
        return Exchange(
            port, "POST /hook/provider HTTP/1.1\r\nHost: a\r\nConnection: close\r\nX-Secret: "
                  "0123456789abcdef\r\nContent-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n" + body);
    }
    void Deliver(const std::string& name, const std::string& mail)
    {
        Write(folder / "mail/tmp" / name, mail);
        fs::rename(folder / "mail/tmp" / name, folder / "mail/new" / name);
    }
    [[nodiscard]] std::size_t MessagesIn(const std::string& spool) const
    {
        std::error_code none;
        std::size_t count = 0;
        for (const fs::directory_entry& file : fs::directory_iterator(folder / spool, none)) {
            count += file.path().extension() == ".txt" ? 1U : 0U;
        }
        return count;
    }
    static std::string HeaderOf(const std::string& sender, const std::string& from = "")
    {
        return "Return-Path: <" + sender +
               ">\nAuthentication-Results: mx.example.net; dmarc=pass header.from=example.org\nFrom: " +
               (from.empty() ? sender : from) + '\n';
    }
};

TEST_F(AbuseTest, guessedCodes_endAfterTenAndTheCodeOfAnotherNetworkStaysGood)
{
    ConfigureProvider("", "", "");
    Write(folder / "service.toml",
          std::regex_replace(Read(folder / "service.toml"), std::regex("\\[metrics\\]"),
                             "proxies = [\"127.0.0.1\"]\n[metrics]"));
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const std::string confirm = SignUp(port, "a@b.example", "pc");
    const auto ask = [&](const std::string& target, const std::string& client) {
        return Exchange(port, "GET " + target +
                                  " HTTP/1.1\r\nHost: a\r\nConnection: close\r\n"
                                  "X-Forwarded-For: " +
                                  client + "\r\n\r\n");
    };
    for (int guess = 0; guess < 20; ++guess) {
        EXPECT_THAT(ask(kScripts + "ma/confirmSignup.pl?prod_string=" + IdentifierOf("thief") +
                            "&vCode=" + std::to_string(1'000'000'000'000'000LL + guess),
                        "192.0.2.1"),
                    HasSubstr("result=\"0\""));
    }
    EXPECT_THAT(ask(confirm, "192.0.2.1"), HasSubstr("result=\"0\"")) << "even a good code";
    EXPECT_THAT(ask(confirm, "192.0.2.2"), HasSubstr("result=\"1\""));
    const std::string metrics = Fetch(service->AwaitMetricsPort(), "/metrics");
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_codes_total{outcome=\"wrong\"} 10\n"));
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_codes_total{outcome=\"limited\"} 11\n"));
}

TEST_F(AbuseTest, prayerCallsForInventedIdentifiers_queueNothing)
{
    ConfigureProvider();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const unsigned short metricsPort = service->AwaitMetricsPort();
    Register(port, "a@b.example", "pc");
    for (const char* const invented : {"", "pc2", "PC", "p", "pc'--", "1"}) {
        EXPECT_EQ(Call(port, invented, 5), "<root/>") << invented;
    }
    EXPECT_EQ(Run({"outbox"}).output, "");
    EXPECT_THAT(Fetch(metricsPort, "/metrics"), HasSubstr("\nbeacond_texts_total{outcome=\"queued\"} 0\n"));
}

TEST_F(AbuseTest, stolenIdentifier_costsOneTextAPrayerWithoutTheThiefsWords)
{
    ConfigureProvider();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    Register(port, "a@b.example", "pc");
    for (const char* const time : {"call+me+on+0900", "18:42%0D%0Acall", "18:42"}) {
        for (int prayer = -1; prayer <= 9; ++prayer) {
            EXPECT_EQ(Call(port, "pc", prayer, time), "<root/>");
        }
    }
    ASSERT_TRUE(Drained());
    EXPECT_EQ(Texts(), (std::map<std::string, int>{{"a@b.example", 6}}));
    EXPECT_EQ(wordings.count("Maghrib 18:42"), 1U);
    for (const std::string& wording : wordings) {
        EXPECT_THAT(wording, Not(HasSubstr("call")));
    }
}

TEST_F(AbuseTest, manyInstallationsOfOnePhone_haveOneTextAPrayer)
{
    ConfigureProvider("price = 10\n", "spend_per_day = 1000\n");
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    Register(port, "a@b.example", "pc1");
    Register(port, "a@b.example", "pc2");
    for (const char* const installation : {"pc1", "pc2", "pc2", "pc1"}) {
        EXPECT_EQ(Call(port, installation, 5), "<root/>");
    }
    ASSERT_TRUE(Drained());
    EXPECT_EQ(Texts(), (std::map<std::string, int>{{"a@b.example", 1}}));
    EXPECT_TRUE(Becomes([&] { return Run({"outbox"}).errors.find("; 30 spent today") != std::string::npos; }))
        << "two codes and a text";
}

TEST_F(AbuseTest, repeatedConfirmation_holdsForItsInstallationOnly)
{
    ConfigureProvider();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const std::string confirm = SignUp(port, "a@b.example", "pc");
    EXPECT_THAT(Fetch(port, confirm), HasSubstr("result=\"1\""));
    EXPECT_THAT(Fetch(port, confirm), HasSubstr("result=\"1\"")) << "the first reply may be lost";
    EXPECT_THAT(Fetch(port, std::regex_replace(confirm, std::regex("prod_string=pc-"), "prod_string=thief-")),
                HasSubstr("result=\"0\""));
    EXPECT_EQ(Call(port, "thief", 5), "<root/>");
    EXPECT_EQ(Run({"outbox"}).output, "");
}

TEST_F(AbuseTest, formForOthers_endsAtTheLimitOfTheAddressAndTakesNoPhoneNumber)
{
    ConfigureProvider();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    for (int signup = 0; signup < 3; ++signup) {
        (void)SignUp(port, "victim@b.example", "pc");
    }
    EXPECT_THAT(PostSignup(port, "address=victim%40b.example"), StartsWith("HTTP/1.1 429 "));
    EXPECT_THAT(PostSignup(port, "address=victim%2B1%40b.example"), StartsWith("HTTP/1.1 429 "));
    for (const char* const number : {"%2B442079460001", "00442079460001", "tel:%2B442079460001"}) {
        EXPECT_THAT(PostSignup(port, std::string("address=") + number), StartsWith("HTTP/1.1 400 "));
    }
}

TEST_F(AbuseTest, lineBreaksInEachField_addNoRecipientAndNoMessage)
{
    ConfigureRoads();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const std::string injected = "%0D%0ABcc:%20b%40example.org";
    EXPECT_THAT(PostSignup(port, "address=a%40example.org" + injected), StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(PostSignup(port, "address=https%3A%2F%2Fntfy.example.org%2Ft" + injected),
                StartsWith("HTTP/1.1 4"));
    EXPECT_THAT(PostHook(port, "Id=1&Body=test&From=%2B442079460001" + injected),
                StartsWith("HTTP/1.1 200 "));
    EXPECT_EQ(MessagesIn("state/spool") + MessagesIn("phone"), 0U);
    EXPECT_THAT(PostHook(port, "Id=2&From=%2B442079460001&Body=test" + injected),
                StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(PostSignup(port, "address=a%40example.org&invite=x" + injected), StartsWith("HTTP/1.1 200 "));
    Deliver("1", HeaderOf("c@example.org\r\nBcc: b@example.org") + "\ntest\n");
    Deliver("2", HeaderOf("d@example.org") + "Subject: =?UTF-8?Q?test=0D=0ABcc:_b@example.org?=\n\nhello\n");
    ASSERT_TRUE(Becomes([&] { return fs::is_empty(folder / "mail/new"); }));
    ASSERT_EQ(MessagesIn("state/spool"), 2U) << "to the form and to the second mail";
    ASSERT_EQ(MessagesIn("phone"), 1U);
    for (const char* const spool : {"state/spool", "phone"}) {
        for (const fs::directory_entry& file : fs::directory_iterator(folder / spool)) {
            EXPECT_THAT(Read(file.path()), Not(HasSubstr("Bcc")));
        }
    }
}

TEST_F(AbuseTest, giantAndNestedMails_delayNoOther)
{
    ConfigureRoads();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    std::string nested = HeaderOf("a@example.org");
    for (int level = 0; level < 500; ++level) {
        nested += "Content-Type: multipart/mixed; boundary=b" + std::to_string(level) + "\n\n--b" +
                  std::to_string(level) + "\n";
    }
    Deliver("1", nested + "\ntest\n");
    Deliver("2", HeaderOf("b@example.org") + "Content-Type: text/plain\n\nhello\n" +
                     std::string(50'000'000, 'a') + "\ntest\n");
    Deliver("3", HeaderOf("c@example.org") + "\ntest\n");
    EXPECT_TRUE(Becomes([&] { return fs::is_empty(folder / "mail/new"); }));
    EXPECT_EQ(MessagesIn("state/spool"), 1U);
    EXPECT_EQ(Terminate().status, 0);
}

TEST_F(AbuseTest, replayedPostOfAHook_isAnsweredOnce)
{
    ConfigureRoads();
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    for (int post = 0; post < 3; ++post) {
        EXPECT_THAT(PostHook(port, "Id=1&From=%2B442079460001&Body=test"), StartsWith("HTTP/1.1 200 "));
    }
    EXPECT_EQ(MessagesIn("phone"), 1U);
}

TEST_F(AbuseTest, stopForAnother_endsNothing)
{
    ConfigureRoads();
    ASSERT_NE(Serve(), 0);
    Deliver("1", HeaderOf("victim@example.org") + "\ntest\n");
    ASSERT_TRUE(Becomes([&] { return MessagesIn("state/spool") == 1; }));
    Deliver("2", HeaderOf("thief@example.org") + "\nSTOP victim@example.org\n");
    Deliver("3", HeaderOf("thief@example.org", "victim@example.org") + "Subject: STOP\n\nSTOP\n");
    Deliver("4", "Return-Path: <victim@example.org>\nAuthentication-Results: mx.example.net; dmarc=fail "
                 "header.from=example.org\nFrom: victim@example.org\n\nSTOP\n");
    // A signed mail of the thief, sent again with another envelope sender of the same provider.
    Deliver("5", HeaderOf("victim@example.org", "thief@example.org") + "\nSTOP\n");
    ASSERT_TRUE(Becomes([&] { return fs::is_empty(folder / "mail/new"); }));
    EXPECT_EQ(MessagesIn("state/spool"), 1U) << "no messages have ended";
    EXPECT_THAT(Run({"export", "victim@example.org"}).output, HasSubstr("\"code_expires\""));
}
