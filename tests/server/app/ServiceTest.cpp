// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Becomes.h"
#include "server/app/ServiceFixture.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

class ServiceTest : public ServiceFixture
{
protected:
    /// Signs up a device, and returns the target that confirms its code.
    std::string SignUp(unsigned short port)
    {
        EXPECT_THAT(PostSignup(port, "address=some.one%2Btag%40example.org"),
                    HasSubstr("The message is on its way"));
        const std::string text = Read(fs::directory_iterator(folder / "state/spool")->path());
        std::smatch match;
        EXPECT_TRUE(std::regex_search(text, match, std::regex("personal code: ([0-9 ]{19})\n")));
        return kScripts + "ma/confirmSignup.pl?prod_string=installation-of-pc&dist_string=&vCode=" +
               std::regex_replace(match[1].str(), std::regex(" "), "-");
    }
    /// Whether the spool has a message with that text.
    [[nodiscard]] bool HasText(const std::string& text) const
    {
        const fs::directory_iterator entries(folder / "state/spool");
        return std::any_of(begin(entries), end(entries), [&](const fs::directory_entry& entry) {
            return entry.path().extension() == ".txt" && Read(entry.path()).ends_with("\n\n" + text + "\n");
        });
    }
    /// A spool that takes one message, the code of a sign-up, and makes the texts wait.
    void ConfigureSlowChannel()
    {
        Configure("[messages]\nchannels = [\"slow\"]\n[[messages.channel]]\nname = \"slow\"\n"
                  "type = \"spool\"\nfolder = \"state/spool\"\nper_second = 0.002\n");
    }
};

TEST_F(ServiceTest, log_isJsonWithoutQueryAndAddress)
{
    const unsigned short port = Serve();
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl?prod_string=secret&city=Nowhere"), "<root/>");
    EXPECT_THAT(Fetch(port, "/hidden/secret"), HasSubstr("no such page"));
    for (const char* const path :
         {"/x\",\"request\":\"forged", "/cgi-bin/dbeacon/startup.pl&prod_string=secret"}) {
        EXPECT_THAT(
            Exchange(port,
                     std::string("PUT ") + path +
                         " HTTP/1.1\r\nHost: a\r\nX-Forwarded-For: 192.0.2.7\r\nConnection: close\r\n\r\n"),
            StartsWith("HTTP/1.1 405 "));
    }
    const std::string log = Terminate().errors;
    EXPECT_THAT(log, Not(HasSubstr("secret")));
    EXPECT_THAT(log, Not(HasSubstr("Nowhere")));
    EXPECT_THAT(log, Not(HasSubstr("127.0.0.1")));
    EXPECT_THAT(log, Not(HasSubstr("192.0.2.7")));
    EXPECT_THAT(log, HasSubstr("\"level\":\"warning\",\"message\":\"a loopback or private address sends "
                               "X-Forwarded-For and is not in http.proxies"));
    EXPECT_THAT(log, HasSubstr(R"("request":"startup.pl","status":200,"microseconds":)"));
    EXPECT_THAT(log, HasSubstr(R"("request":"unknown","status":405,)"));
    EXPECT_THAT(log, Not(HasSubstr("forged")));
}

// CheckTest states the reasons of a part in detail.
TEST_F(ServiceTest, unusablePart_isOneLineAndStatusTwo)
{
    const struct
    {
        std::function<void()> spoil;
        std::string line;
    } rows[] = {
        {[&] { Configure("[htpp]\na = 1\n"); }, "service.toml:7: htpp: unknown key"},
        {[&] { Configure("[store]\nurl = \"sqlite:/proc/none/a.db\"\n"); }, "/proc/none/a.db"},
        {[&] { Configure("[keys]\nfolder = \"/proc/none\"\n"); }, "/proc/none"},
        {[&] { Configure("[messages]\nchannels = [\"spool\"]\nspool = \"/proc/none\"\n"); }, "/proc/none"},
        {[&] { Configure("[keys]\nfolder = \"other\"\n"); },
         "other/identifier.key: not the key that the store was written with\n"},
        {[&] { fs::remove(folder / "places.bin"); }, "places.bin"},
    };
    ASSERT_NE(Serve(), 0);
    EXPECT_EQ(Terminate().status, 0);
    for (const auto& row : rows) {
        Configure("");
        row.spoil();
        const ProcessEnd end = Run({"serve"});
        EXPECT_EQ(end.status, 2);
        EXPECT_THAT(end.errors, StartsWith("dusk-beacond: "));
        EXPECT_THAT(end.errors, HasSubstr(row.line));
        EXPECT_EQ(std::count(end.errors.begin(), end.errors.end(), '\n'), 1) << end.errors;
    }
}

TEST_F(ServiceTest, portInUse_isOneLineAndStatusTwo)
{
    const std::string port = std::to_string(Serve());
    const TemporaryFolder other;
    const std::pair<std::string, std::string> rows[] = {{"http", "metrics"}, {"metrics", "http"}};
    for (const auto& [taken, free] : rows) {
        Write(other / "service.toml", "[" + taken + "]\nlisten = \"127.0.0.1:" + port + "\"\n[" + free +
                                          "]\nlisten = \"127.0.0.1:0\"\n");
        const ProcessEnd end = RunService((other / "").string(), serve);
        EXPECT_EQ(end.status, 2);
        EXPECT_EQ(end.errors, "dusk-beacond: " + taken + ".listen: can't listen at 127.0.0.1:" + port +
                                  ": Address already in use\n");
    }
}

TEST_F(ServiceTest, signup_isConfirmedAndItsTextIsSent)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    const unsigned short port = Serve();
    EXPECT_THAT(Fetch(port, "/"), HasSubstr("<form method=\"post\" action=\"/signup\">"));
    EXPECT_THAT(Fetch(port, SignUp(port)), StartsWith("<root result=\"1\" message=\""));
    EXPECT_EQ(
        Fetch(port,
              kScripts +
                  "prayerCall.pl?prod_string=installation-of-pc&aid=SA-G104515&pno=5&alert_type=Normal&ma=1&"
                  "dist_string=&time=18:42&aid=SA-G104515"),
        "<root/>");
    EXPECT_TRUE(Becomes([&] { return HasText("Maghrib 18:42"); }));
    const unsigned short metricsPort = service->AwaitMetricsPort();
    EXPECT_TRUE(Becomes([&] { return Run({"outbox"}).output.empty(); }));
    const std::string metrics = Fetch(metricsPort, "/metrics");
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_texts_ended_total{outcome=\"sent\"} 1\n"));
    EXPECT_THAT(metrics, HasSubstr("\nbeacond_channel_accepted_total{channel=\"spool\"} 1\n"));
}

TEST_F(ServiceTest, outbox_showsTheStateOfATextThatWaits)
{
    ConfigureSlowChannel();
    const unsigned short port = Serve();
    EXPECT_THAT(Fetch(port, SignUp(port)), StartsWith("<root result=\"1\""));
    EXPECT_EQ(
        Fetch(port,
              kScripts + "prayerCall.pl?prod_string=installation-of-pc&aid=SA-G104515&pno=5&ma=1&time=18:42"),
        "<root/>");
    EXPECT_TRUE(Becomes([&] { return Run({"outbox"}).output.ends_with("state=leased\n"); }));
    // The end returns the lease at once.
    EXPECT_EQ(Terminate().status, 0);
    EXPECT_THAT(Run({"outbox"}).output,
                MatchesRegex("1\tdevice=1\tprayer=5\ttime=18:42\tplace=SA-G104515\tkind=mail\tage=[0-9]+\t"
                             "attempts=0\tstate=waiting\n"));
}

TEST_F(ServiceTest, messageTest_sendsOneMessageAndSaysWhatHappened)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    EXPECT_EQ(Run({"message", "test", "someone@example.org"}).output, "channel spool: accepted\n");
    EXPECT_TRUE(HasText("This is a test of the channel \"spool\"."));
    EXPECT_EQ(Run({"message", "test", "+4915112345678"}).errors,
              "dusk-beacond: no channel is configured for addresses of the kind \"sms\"\n");
    Configure("[messages]\nchannels = [\"a\"]\n[[messages.channel]]\nname = \"a\"\ntype = \"smtp\"\n"
              "server = \"127.0.0.1:1\"\ntls = \"none\"\nfrom = \"beacon@example.org\"\n");
    const ProcessEnd end = Run({"message", "test", "someone@example.org"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.errors, StartsWith("dusk-beacond: channel a: failed; the service would try again: "));
    EXPECT_THAT(end.errors, Not(HasSubstr("someone")));
}

TEST_F(ServiceTest, forget_deletesTheDeviceOfAnAddressBesideTheRunningService)
{
    ConfigureSlowChannel();
    const unsigned short port = Serve();
    const std::string confirm = SignUp(port);
    EXPECT_THAT(Fetch(port, confirm), StartsWith("<root result=\"1\""));
    EXPECT_EQ(Fetch(port, kScripts + "prayerCall.pl?prod_string=installation-of-pc&pno=5&ma=1&time=18:42"),
              "<root/>");
    EXPECT_THAT(Run({"outbox"}).output, HasSubstr("prayer=5"));

    const ProcessEnd end = Run({"forget", " Some.One+Tag@Example.org"});
    EXPECT_EQ(end.status, 0) << end.errors;
    EXPECT_EQ(end.output, "The device of s...@example.org, its texts and its sign-ups are deleted.\n");
    EXPECT_EQ(Run({"outbox"}).output, "");
    EXPECT_THAT(Fetch(port, confirm), StartsWith("<root result=\"0\""));
    const ProcessEnd again = Run({"forget", "some.one+tag@example.org"});
    EXPECT_EQ(again.status, 2);
    EXPECT_EQ(again.errors, "dusk-beacond: nothing is kept of that address\n");
    EXPECT_EQ(Run({"forget", "someone"}).errors, "dusk-beacond: \"someone\" is no mail address, no phone "
                                                 "number with its country, and no ntfy topic\n");
}

TEST_F(ServiceTest, forget_keyOfAnotherStore_isRefused)
{
    ASSERT_NE(Serve(), 0);
    fs::copy_file(folder / "state/keys/address.key", folder / "state/keys/index.key",
                  fs::copy_options::overwrite_existing);
    EXPECT_EQ(Run({"forget", "some.one@example.org"}).errors,
              "dusk-beacond: state/keys/index.key: not the key that the store was written with\n");
}

TEST_F(ServiceTest, signup_withoutAChannel_isNotOffered)
{
    const unsigned short port = Serve();
    EXPECT_THAT(Fetch(port, "/"), HasSubstr("This service sends no messages."));
    EXPECT_THAT(PostSignup(port, "address=a%40example.org"), StartsWith("HTTP/1.1 404 "));
}

TEST_F(ServiceTest, signup_invalidRequests_areRefused)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    const unsigned short port = Serve();
    EXPECT_THAT(PostSignup(port, "address=nobody"), StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(PostSignup(port, ""), StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(Exchange(port, "GET /signup HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n"),
                StartsWith("HTTP/1.1 405 "));
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(PostSignup(port, "address=a%40example.org"), StartsWith("HTTP/1.1 200 "));
    }
    EXPECT_THAT(PostSignup(port, "address=A%40example.org"), StartsWith("HTTP/1.1 429 "));
}

TEST_F(ServiceTest, announcementsAddedByCommands_areServedAndRemoved)
{
    EXPECT_EQ(Run({"ad", "add"}, "<b>Eid</b>").output, "1\n");
    EXPECT_EQ(Run({"release", "add", "1", "6", "https://example.org/"}).status, 0);
    const unsigned short port = Serve();
    EXPECT_THAT(Fetch(port, kScripts + "getAd.pl"), HasSubstr("ad_url=\"PGI+RWlkPC9iPg==\""));
    EXPECT_THAT(Fetch(port, kScripts + "version.pl?curr_v=1&curr_s=5"), HasSubstr("version_sequence=\"6\""));
    EXPECT_THAT(Fetch(port, "/downloads/"),
                HasSubstr("<a href=\"https://example.org/\">Dusk Beacon 1.6</a>"));
    EXPECT_THAT(Run({"ad", "list"}).output, StartsWith("1\t"));

    EXPECT_EQ(Run({"ad", "remove", "1"}).status, 0);
    EXPECT_TRUE(
        Becomes([&] { return Fetch(port, kScripts + "getAd.pl").find("ad_url=\"\"") != std::string::npos; }));
    EXPECT_EQ(Run({"ad", "remove", "1"}).status, 2);
}

TEST_F(ServiceTest, release_isRemovedByWhatTheListShows)
{
    for (const char* const sequence : {"6", "7"}) {
        EXPECT_EQ(Run({"release", "add", "1.2", sequence, "https://example.org/"}).status, 0);
    }
    EXPECT_EQ(Run({"release", "list"}).output,
              "1.2\t6\thttps://example.org/\n1.2\t7\thttps://example.org/\n");
    EXPECT_EQ(Run({"release", "remove", "1.2", "7"}).status, 0);
    EXPECT_EQ(Run({"release", "list"}).output, "1.2\t6\thttps://example.org/\n");

    const ProcessEnd end = Run({"release", "remove", "1.2", "7"});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.errors, "dusk-beacond: there is no release 1.2.7\n");
}

TEST_F(ServiceTest, log_repeatedError_isSuppressedAndThenCounted)
{
    const unsigned short port = Serve();
    beacond::Database((folder / "state/service.db").string()).Execute("DROP TABLE installation");
    const auto log = [this] { return Read(folder / "errors"); };
    int calls = 0;
    // The error may be logged again ten seconds after the first time.
    EXPECT_TRUE(Becomes([&] {
        ++calls;
        return Fetch(port, kScripts + "prayerCall.pl?prod_string=installation-of-pc&pno=5&ma=1&time=18:42") !=
                   "The text could not be stored.\n" ||
               log().find("\"held_back\"") != std::string::npos;
    }));
    const std::string error = "no such table: installation\"";
    EXPECT_THAT(log(), HasSubstr(error + "}\n"));
    EXPECT_THAT(log(), HasSubstr(error + ",\"held_back\":" + std::to_string(calls - 2) + "}\n"));
    EXPECT_EQ(log().find(error, log().find(error) + 1), log().rfind(error));
}

TEST_F(ServiceTest, term_countedStarts_areStored)
{
    const unsigned short port = Serve();
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl?aid=SA-G104515"), "<root/>");
    EXPECT_EQ(Terminate().status, 0);
    EXPECT_THAT(Run({"starts"}).output, MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}\tSA\tother\t1\n"));
}

TEST_F(ServiceTest, commandLine_mistakesAreStatusTwo)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"unknown"},
                                                      {"ad"},
                                                      {"release", "add", "one", "6", "https://a/"},
                                                      {"release", "add", "1", "6", "javascript:alert(1)"},
                                                      {"release", "add", "1", "6", "http://"},
                                                      {"ad", "add", "--from", "2027-02-29"},
                                                      {"ad", "add", "--country", "sa"},
                                                      {"ad", "add"},
                                                      {"check", "--config", ""},
                                                      {"ad", "add", "--from", "tomorrow"}}) {
        EXPECT_EQ(RunService(Path(), arguments).status, 2);
    }
    EXPECT_EQ(RunService(Path(), {"--help"}).status, 0);
}
