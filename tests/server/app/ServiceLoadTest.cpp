// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <thread>

namespace {

constexpr int kClients = 4;
constexpr int kRounds = 12;

std::string Get(const std::string& target)
{
    return "GET " + target + " HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n";
}

/// Requests for each script and two pages.
std::vector<std::string> AllRequests()
{
    std::vector<std::string> requests;
    for (const char* const script :
         {"requestProdID.pl?dist=d", "startup.pl?aid=SA-G104515", "getAd.pl?prod_string=p",
          "version.pl?curr_v=1&curr_s=5", "prayerCall.pl?prod_string=p&pno=5&ma=1&time=18:42", "getStates.pl",
          "getMatchingCities.pl?state_id=SA&city_string=ma", "getCityInfo.pl?aid=SA-G104515",
          "ma/confirmSignup.pl?prod_string=p&vCode=1234567812345678"}) {
        requests.push_back(Get(std::string("/cgi-bin/dbeacon/") + script));
    }
    requests.push_back(Get("/"));
    requests.push_back(Get("/readyz"));
    return requests;
}

} // namespace

class ServiceLoadTest : public ServiceFixture
{
};

// Under the thread sanitizer a data race ends the program during this test.
TEST_F(ServiceLoadTest, clientsAndCommandsWhilePlacesAreReadAgain_areAllAnswered)
{
    Configure("[messages]\nchannels = [\"spool\"]\n");
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const std::vector<std::string> requests = AllRequests();
    std::atomic<std::size_t> answered = 0;
    const auto count = [&answered](const std::string& reply) {
        answered += reply.starts_with("HTTP/1.1 ") ? 1U : 0U;
    };
    std::atomic<int> atWork = kClients;
    std::vector<std::jthread> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                for (const std::string& request : requests) {
                    count(Exchange(port, request));
                }
                count(PostSignup(port, "address=some.one%40example.org"));
            }
            --atWork;
        });
    }
    while (atWork > 0) {
        service->Signal(SIGHUP);
        EXPECT_EQ(Run({"ad", "add"}, "<b>Eid</b>").status, 0);
    }
    clients.clear();
    const ProcessEnd end = Terminate();
    EXPECT_EQ(end.status, 0) << end.errors;
    EXPECT_EQ(answered, kClients * kRounds * (requests.size() + 1));
}
