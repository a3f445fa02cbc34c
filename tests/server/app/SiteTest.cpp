// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Site.h"

#include "messages/Channels.h"
#include "messages/Hooks.h"
#include "messages/Signups.h"
#include "server/protocol/ScriptsFixture.h"

using namespace beacond;

namespace {

constexpr LimitOptions kOneRequest{1, 1, 0, 1, std::chrono::milliseconds(250)};

} // namespace

class SiteTest : public ScriptsTest
{
protected:
    SiteTest()
        : ScriptsTest(kOneRequest)
    {
    }

    unsigned StatusOf(const std::string& path, Method method = Method::Get)
    {
        Request request;
        request.method = method;
        request.path = path;
        request.contentType = "application/x-www-form-urlencoded";
        request.fields = fields;
        request.client = boost::asio::ip::make_address(client);
        request.delay = delay;
        boost::asio::io_context context;
        auto answer = boost::asio::co_spawn(context, site.Answer(request), boost::asio::use_future);
        context.run();
        return answer.get().status;
    }

    std::vector<RequestField> fields;
    Report report = [](std::string_view) {};
    const Channels channels;
    Signups signups{keys, store, channels, {}, report};
    Hooks hooks{keys, store, signups, {}, report};
    Latest<std::string> signupAddress;
    Site site{{keys, store, starts, places, announcements, dists, [this] { return now; }, report, limits},
              signups,
              hooks,
              signupAddress};
};

TEST_F(SiteTest, networkBeyondItsRate_isRefusedPagesButNoHealthCheck)
{
    EXPECT_EQ(StatusOf("/"), 200U);
    for (const char* const path :
         {"/", "/dbeacon/help.html", "/downloads/", "/cgi-bin/dbeacon/sound/sound.pl", "/none"}) {
        EXPECT_EQ(StatusOf(path), 429U) << path;
    }
    EXPECT_EQ(StatusOf("/signup", Method::Post), 429U);
    EXPECT_EQ(StatusOf("/healthz"), 200U);
    EXPECT_EQ(StatusOf("/readyz"), 200U);
}

TEST_F(SiteTest, signupFromThePageOfAnotherSite_isRefused)
{
    fields = {{"sec-fetch-site", "cross-site"}};
    EXPECT_EQ(StatusOf("/signup", Method::Post), 403U);
    client = "192.0.2.99";
    fields = {{"sec-fetch-site", "same-origin"}};
    EXPECT_EQ(StatusOf("/signup", Method::Post), 404U) << "no channel";
}

TEST_F(SiteTest, delayedThread_refusesPagesAfterSearches)
{
    delay = std::chrono::milliseconds(499);
    EXPECT_EQ(StatusOf("/cgi-bin/dbeacon/getStates.pl"), 503U);
    EXPECT_EQ(StatusOf("/"), 200U);
    delay = std::chrono::milliseconds(500);
    EXPECT_EQ(StatusOf("/"), 503U);
    EXPECT_EQ(StatusOf("/signup", Method::Post), 503U);
    delay = std::chrono::hours(1);
    EXPECT_EQ(StatusOf("/healthz"), 200U);
    EXPECT_EQ(StatusOf("/readyz"), 200U);
}
