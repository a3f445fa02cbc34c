// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Becomes.h"
#include "server/Files.h"
#include "server/app/ServiceFixture.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <map>
#include <random>

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

/// The real program with a Maildir and the hook of a provider.
class RoadsServiceTest : public ServiceFixture
{
protected:
    RoadsServiceTest()
    {
        fs::create_directories(folder / "mail/new");
        fs::create_directories(folder / "mail/tmp");
        Write(folder / "secret", "0123456789abcdef");
        Configure(
            "[messages]\nchannels = [\"spool\", \"phone\"]\nsignup_address = \"signup@example.net\"\n"
            "maildir = \"mail\"\nmail_server = \"mx.example.net\"\nsms_prefixes = [\"+44\"]\n"
            "[[messages.channel]]\nname = \"phone\"\ntype = \"spool\"\nkind = \"sms\"\nfolder = \"phone\"\n"
            "[[messages.hook]]\nname = \"provider\"\nproof = \"secret\"\nheader = \"X-Secret\"\n"
            "secret_file = \"secret\"\nsender = \"From\"\ntext = \"Body\"\nid = \"Id\"\n");
    }
    void Deliver(const std::string& sender, const std::string& text)
    {
        // Unique, as a Maildir demands: the service deletes a file by its name.
        const std::string name = std::to_string(++delivered) + '.' + sender;
        Write(folder / "mail/tmp" / name,
              "Return-Path: <" + sender +
                  ">\nAuthentication-Results: mx.example.net; dmarc=pass header.from=" +
                  sender.substr(sender.find('@') + 1) + "\nFrom: " + sender + "\n\n" + text + "\n");
        fs::rename(folder / "mail/tmp" / name, folder / "mail/new" / name);
    }
    /// The number of answers to each address.
    [[nodiscard]] std::map<std::string, int> Answers(const std::string& spool = "state/spool") const
    {
        std::map<std::string, int> answers;
        std::error_code none;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder / spool, none)) {
            if (entry.path().extension() == ".txt") {
                const std::string text = Read(entry.path());
                ++answers[text.substr(4, text.find('\n') - 4)];
            }
        }
        return answers;
    }
    [[nodiscard]] std::size_t Count() const
    {
        std::size_t count = 0;
        for (const auto& [address, answers] : Answers()) {
            count += static_cast<std::size_t>(answers);
        }
        return count;
    }
    static std::string PostHook(unsigned short port, const std::string& body, const std::string& secret)
    {
        return Exchange(
            port, "POST /hook/provider HTTP/1.1\r\nHost: a\r\nConnection: close\r\nX-SECRET: " + secret +
                      "\r\nContent-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n" + body);
    }

    int delivered = 0;
};

TEST_F(RoadsServiceTest, mailWithTest_isAnswered_withStopEnds)
{
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    EXPECT_THAT(Fetch(port, "/"), HasSubstr("signup@example.net with the word \"test\"."));
    EXPECT_THAT(Fetch(port, "/dbeacon/help.html"), HasSubstr("signup@example.net with the word \"test\"."));
    Deliver("aisha@example.org", "Test");
    ASSERT_TRUE(Becomes([&] { return Answers()["aisha@example.org"] == 1; }));
    Deliver("aisha@example.org", "stop");
    ASSERT_TRUE(Becomes([&] { return Answers()["aisha@example.org"] == 2; }));
    ASSERT_TRUE(Becomes([&] { return fs::is_empty(folder / "mail/new"); }));
    const std::string metrics = Fetch(service->AwaitMetricsPort(), "/metrics");
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_signups_total{outcome=\"sent\"} 1\n"));
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_signups_total{outcome=\"stopped\"} 1\n"));
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_incoming_files_total{outcome=\"handled\"} 2\n"));
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_hook_posts_total{outcome=\"done\"} 0\n"));
    const ProcessEnd end = Terminate();
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output + end.errors, Not(HasSubstr("aisha")));
}

TEST_F(RoadsServiceTest, hook_takesAProvidersMessages)
{
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const std::string body = "From=%2B442079460001&Body=test&Id=1";
    EXPECT_THAT(PostHook(port, body, "0123456789abcdee"), StartsWith("HTTP/1.1 403 "));
    EXPECT_THAT(PostHook(port, body, "0123456789abcdef"), StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(PostHook(port, body, "0123456789abcdef"), StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(PostHook(port, "From=%2B442079460001&Body=test", "0123456789abcdef"),
                StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(PostHook(port, std::string(16'385, 'a'), "0123456789abcdef"), StartsWith("HTTP/1.1 413 "));
    EXPECT_THAT(Exchange(port, "GET /hook/provider HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n"),
                StartsWith("HTTP/1.1 405 "));
    EXPECT_THAT(
        Exchange(port,
                 "POST /hook/none HTTP/1.1\r\nHost: a\r\nConnection: close\r\nContent-Length: 0\r\n\r\n"),
        StartsWith("HTTP/1.1 404 "));
    EXPECT_EQ(Answers("phone"), (std::map<std::string, int>{{"+442079460001", 1}}));
    const ProcessEnd end = Terminate();
    EXPECT_THAT(end.output + end.errors, Not(HasSubstr("provider")));
    EXPECT_THAT(end.output + end.errors, Not(HasSubstr("44207")));
}

TEST_F(RoadsServiceTest, kills_loseNoMailAndRepeatAtMostOneAnswerEach)
{
    constexpr int kMails = 60;
    for (int i = 0; i < kMails; ++i) {
        Deliver("a@d" + std::to_string(i) + ".example", "test");
    }
    std::mt19937 chance{std::random_device()()};
    int kills = 0;
    while (!fs::is_empty(folder / "mail/new")) {
        const std::size_t before = Count();
        ASSERT_NE(Serve(), 0);
        // With two answers a round handles at least one further mail to its end.
        ASSERT_TRUE(Becomes([&] { return Count() >= before + 2 || fs::is_empty(folder / "mail/new"); }));
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 20'000)(chance));
        service->Signal(SIGKILL);
        EXPECT_EQ(service->Wait().status, 128 + SIGKILL);
        ++kills;
    }
    const auto answers = Answers();
    EXPECT_EQ(answers.size(), static_cast<std::size_t>(kMails)) << "each mail has its answer";
    EXPECT_LE(Count(), static_cast<std::size_t>(kMails + kills));
    EXPECT_FALSE(fs::exists(folder / "mail/cur")) << "no mail was given up";
    RecordProperty("kills", kills);
    RecordProperty("repeated", static_cast<int>(Count()) - kMails);
    std::printf("%d kills, %d repeated answers\n", kills, static_cast<int>(Count()) - kMails);
}
