// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Metrics.h"

#include "app/RoadMetrics.h"
#include "http/HttpFigures.h"
#include "messages/Roads.h"
#include "messages/SenderFigures.h"
#include "protocol/MessageScripts.h"
#include "protocol/RequestLimits.h"
#include "server/app/ServiceFixture.h"

#include <gmock/gmock.h>

#include <map>
#include <sstream>

using namespace beacond;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// The values by name and labels, without the comments.
std::map<std::string, std::string> Values(const std::string& text)
{
    std::map<std::string, std::string> values;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t space = line.rfind(' ');
        if (!line.starts_with('#') && space != std::string::npos) {
            values[line.substr(0, space)] = line.substr(space + 1);
        }
    }
    return values;
}

} // namespace

TEST(Metrics, sending_hasEachFigureOnce)
{
    SenderFigures sender;
    ChannelFigures channel;
    const struct
    {
        const char* name;
        std::atomic<std::uint64_t>& count;
    } rows[] = {
        {R"(beacond_outbox_texts{state="waiting"})", sender.waiting},
        {R"(beacond_outbox_texts{state="leased"})", sender.leased},
        {"beacond_outbox_oldest_seconds", sender.oldestSeconds},
        {"beacond_outbox_uncertain_texts", sender.uncertainNow},
        {R"(beacond_texts_ended_total{outcome="sent"})", sender.sent},
        {R"(beacond_texts_ended_total{outcome="refused"})", sender.refused},
        {R"(beacond_texts_ended_total{outcome="given_up"})", sender.givenUp},
        {R"(beacond_texts_ended_total{outcome="capped"})", sender.capped},
        {"beacond_text_attempts_repeated_total", sender.retried},
        {"beacond_text_attempts_uncertain_total", sender.uncertain},
        {"beacond_texts_doubled_total", sender.doubled},
        {"beacond_spend_today", sender.spentToday},
        {"beacond_spend_reached", sender.isSpendReached},
        {R"(beacond_channel_accepted_total{channel="sms"})", channel.accepted},
        {R"(beacond_channel_failures_total{channel="sms"})", channel.failed},
        {R"(beacond_channel_refused_total{channel="sms"})", channel.refused},
        {R"(beacond_channel_failures_in_a_row{channel="sms"})", channel.failuresInARow},
    };
    std::uint64_t number = 0;
    for (const auto& row : rows) {
        row.count = ++number;
    }
    const auto values = Values(SendingMetricsText(sender, {{"sms", channel}}));
    EXPECT_EQ(values.size(), std::size(rows));
    number = 0;
    for (const auto& row : rows) {
        ++number;
        ASSERT_TRUE(values.contains(row.name)) << row.name;
        EXPECT_EQ(values.at(row.name), std::to_string(number)) << row.name;
    }
}

TEST(Metrics, everyCounter_hasItsOwnNameAndLabel)
{
    HttpFigures http;
    MessageFigures messages;
    LimitFigures limits;
    const struct
    {
        const char* name;
        std::atomic<std::uint64_t>& count;
    } rows[] = {
        {"beacond_connections_open", http.connectionsOpen},
        {"beacond_connections_accepted_total", http.connectionsAccepted},
        {R"(beacond_connections_refused_total{limit="total"})", http.refusedByTotal},
        {R"(beacond_connections_refused_total{limit="address"})", http.refusedByAddress},
        {"beacond_accept_errors_total", http.acceptErrors},
        {R"(beacond_replies_total{status="1xx"})", http.replies[1]},
        {R"(beacond_replies_total{status="2xx"})", http.replies[2]},
        {R"(beacond_replies_total{status="3xx"})", http.replies[3]},
        {R"(beacond_replies_total{status="4xx"})", http.replies[4]},
        {R"(beacond_replies_total{status="5xx"})", http.replies[5]},
        {"beacond_requests_refused_total", http.requestsRefused},
        {"beacond_handler_failures_total", http.handlerFailures},
        {"beacond_worker_failures_total", http.workerFailures},
        {"beacond_unlisted_proxy_requests_total", http.unlistedProxies},
        {"beacond_unreadable_forwards_total", http.unreadableForwards},
        {R"(beacond_timeouts_total{phase="header"})", http.headerTimeouts},
        {R"(beacond_timeouts_total{phase="body"})", http.bodyTimeouts},
        {R"(beacond_timeouts_total{phase="idle"})", http.idleTimeouts},
        {R"(beacond_timeouts_total{phase="write"})", http.writeTimeouts},
        {R"(beacond_texts_total{outcome="queued"})", messages.textsQueued},
        {R"(beacond_texts_total{outcome="missed"})", messages.textsMissed},
        {R"(beacond_codes_total{outcome="confirmed"})", messages.codesConfirmed},
        {R"(beacond_codes_total{outcome="wrong"})", messages.codesWrong},
        {R"(beacond_codes_total{outcome="expired"})", messages.codesExpired},
        {R"(beacond_codes_total{outcome="limited"})", messages.codesLimited},
    };
    std::map<std::string, std::string> expected;
    std::uint64_t number = 0;
    const auto set = [&expected, &number](const std::string& name, std::atomic<std::uint64_t>& count) {
        count = ++number;
        expected[name] = std::to_string(number);
    };
    for (const auto& row : rows) {
        set(row.name, row.count);
    }
    const std::pair<const char*, LimitFigures::Counts&> families[] = {
        {"installation", limits.byInstallation}, {"network", limits.byNetwork}, {"load", limits.byLoad}};
    const std::map<RequestKind, const char*> kinds = {
        {RequestKind::Search, "search"},         {RequestKind::Page, "page"},
        {RequestKind::Identifier, "identifier"}, {RequestKind::Confirmation, "confirmation"},
        {RequestKind::Strip, "strip"},           {RequestKind::Version, "version"}};
    for (const auto& [reason, counts] : families) {
        for (const auto& [kind, name] : kinds) {
            set(std::string("beacond_refused_by_") + reason + "_total{kind=\"" + name + "\"}",
                counts[static_cast<std::size_t>(kind)]);
        }
    }
    EXPECT_EQ(Values(MetricsText(http, messages, limits)), expected);
}

TEST(Metrics, roads_haveTheirQueues)
{
    RoadFigures roads;
    roads.waiting = 3;
    roads.setAside = 4;
    const auto values = Values(RoadMetricsText({}, roads, {}, 5));
    EXPECT_EQ(values.at("beacond_incoming_files_waiting"), "3");
    EXPECT_EQ(values.at("beacond_incoming_files_set_aside_total"), "4");
    EXPECT_EQ(values.at("beacond_signup_messages_waiting"), "5");
}

class MetricsTest : public ServiceFixture
{
};

TEST_F(MetricsTest, separateListener_answersTheCountersOfTheService)
{
    const unsigned short port = Serve();
    const unsigned short metrics = service->AwaitMetricsPort();
    EXPECT_EQ(Fetch(port, kScripts + "startup.pl"), "<root/>");
    EXPECT_EQ(Fetch(port, kScripts + "getCityInfo.pl"), "There is no such place.\n");
    EXPECT_EQ(Fetch(port, kScripts + "prayerCall.pl?prod_string=installation-of-pc&pno=1&ma=1&time=5:07"),
              "<root/>");

    const std::string reply =
        Exchange(metrics, "GET /metrics HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(reply, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(reply, HasSubstr("\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\n"));
    std::map<std::string, std::string> values = Values(reply);
    EXPECT_EQ(values["beacond_connections_accepted_total"], "3");
    EXPECT_EQ(values[R"(beacond_replies_total{status="2xx"})"], "2");
    EXPECT_EQ(values[R"(beacond_replies_total{status="4xx"})"], "1");
    EXPECT_THAT(Exchange(metrics, "GET / HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n"),
                StartsWith("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_THAT(Fetch(port, "/metrics"), HasSubstr("no such page"));
}
