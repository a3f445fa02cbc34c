// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/InstallationIdentifier.h"
#include "server/protocol/ScriptsFixture.h"

using namespace beacond;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

struct Script
{
    const char* name;
    RequestKind kind;
    std::chrono::milliseconds refusedAt; ///< the delay of the thread
    std::string refusal;                 ///< the body; empty for a failure in plain text
};

std::vector<Script> RefusableScripts(const std::string& identifier)
{
    const std::string strip =
        R"(<root ad_url="" wait_time=")" + std::to_string(WaitMinutes(identifier)) + R"("/>)";
    const std::string confirmation =
        R"(<root result="0" message="Too many requests come in just now. Please try again in a minute."/>)";
    return {
        {"getStates.pl", RequestKind::Search, 250ms, ""},
        {"getUsCanCity.pl", RequestKind::Search, 250ms, ""},
        {"getNumMatchingCities.pl", RequestKind::Search, 250ms, ""},
        {"getMatchingCities.pl", RequestKind::Search, 250ms, ""},
        {"getCityInfo.pl", RequestKind::Search, 250ms, ""},
        {"noScript.pl", RequestKind::Search, 250ms, ""},
        {"requestProdID.pl", RequestKind::Identifier, 1s, ""},
        {"ma/confirmSignup.pl", RequestKind::Confirmation, 1s, confirmation},
        {"getAd.pl", RequestKind::Strip, 1s, strip},
        {"version.pl", RequestKind::Version, 1s,
         R"(<root version_name="" version_sequence="" download_url=""/>)"},
    };
}

std::string RetryTime(const Response& reply)
{
    const auto found = std::find_if(reply.headers.begin(), reply.headers.end(),
                                    [](const Response::Header& each) { return each.name == "Retry-After"; });
    return found == reply.headers.end() ? std::string() : found->value;
}

constexpr LimitOptions kTight{1, 8, 1, 3, 250ms};

} // namespace

class RequestLimitsTest : public ScriptsTest
{
protected:
    RequestLimitsTest()
        : ScriptsTest(kTight)
    {
        announcements.Set(std::make_shared<const Announcements>(
            Announcements{{{1, "<b>strip</b>", "", "", "", ""}}, {{"9", "9", "https://a/"}}}));
    }

    std::string Identifier() { return MakeInstallationIdentifier(keys.identifier, 20'000); }
    unsigned Search(const std::string& identifier)
    {
        return Ask("getNumMatchingCities.pl", "prod_string=" + identifier).status;
    }
    /// Whether the script was refused in the expected way.
    void ExpectRefusal(const Script& script, const std::string& identifier, unsigned status)
    {
        SCOPED_TRACE(script.name);
        const Response reply = Ask(script.name, "prod_string=" + identifier + "&curr_v=1&curr_s=5");
        if (script.refusal.empty()) {
            EXPECT_EQ(reply.status, status);
            EXPECT_THAT(reply.contentType, StartsWith("text/plain"));
            EXPECT_EQ(RetryTime(reply), status == 429 ? "60" : "5");
        } else {
            EXPECT_EQ(reply.status, 200U);
            EXPECT_EQ(reply.body, script.refusal);
        }
    }
    void ExpectCallsAreAnswered(const std::string& identifier)
    {
        EXPECT_EQ(Body("prayerCall.pl", "prod_string=" + identifier + "&ma=0"), "<root/>");
        EXPECT_EQ(Body("startup.pl", "prod_string=" + identifier), "<root/>");
    }
};

TEST_F(RequestLimitsTest, installationBeyondItsRate_isRefusedAndItsNetworkIsNot)
{
    const std::string identifier = Identifier();
    for (int number = 0; number < 3; ++number) {
        EXPECT_EQ(Search(identifier), 200U);
    }
    for (const Script& script : RefusableScripts(identifier)) {
        ExpectRefusal(script, identifier, 429);
    }
    ExpectCallsAreAnswered(identifier);
    EXPECT_EQ(Search(Identifier()), 200U);
    EXPECT_EQ(limits.Figures().byInstallation[static_cast<std::size_t>(RequestKind::Search)], 6U);
}

TEST_F(RequestLimitsTest, networkBeyondItsRate_isRefusedWithAnyIdentifier)
{
    for (int number = 0; number < 8; ++number) {
        EXPECT_EQ(Search("invented" + std::to_string(number % 2)), 200U);
    }
    EXPECT_EQ(Search(Identifier()), 429U);
    for (const std::string identifier : {"invented", ""}) {
        for (const Script& script : RefusableScripts(identifier)) {
            ExpectRefusal(script, identifier, 429);
        }
        ExpectCallsAreAnswered(identifier);
    }
    client = "192.0.2.2";
    EXPECT_EQ(Search("invented"), 200U);
    EXPECT_EQ(limits.Figures().byNetwork[static_cast<std::size_t>(RequestKind::Strip)], 2U);
}

TEST_F(RequestLimitsTest, delayedThread_refusesSearchesFirstAndPrayerCallsNever)
{
    int number = 0;
    for (const Script& script : RefusableScripts("pc")) {
        client = "192.0.2." + std::to_string(++number);
        delay = script.refusedAt;
        ExpectRefusal(script, "pc", 503);
        EXPECT_GT(limits.Figures().byLoad[static_cast<std::size_t>(script.kind)], 0U) << script.name;
        delay = script.refusedAt - 1ms;
        const Response reply = Ask(script.name, "prod_string=pc&curr_v=1&curr_s=5");
        EXPECT_FALSE(script.refusal.empty() ? reply.status == 503 : reply.body == script.refusal)
            << script.name;
    }
    delay = 1h;
    ExpectCallsAreAnswered("pc");
}
