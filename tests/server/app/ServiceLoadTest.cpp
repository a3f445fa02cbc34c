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

// Each script and two pages.
const char* const kTargets[] = {"/cgi-bin/dbeacon/requestProdID.pl?dist=d",
                                "/cgi-bin/dbeacon/startup.pl?aid=SA-G104515",
                                "/cgi-bin/dbeacon/getAd.pl?prod_string=p",
                                "/cgi-bin/dbeacon/version.pl?curr_v=1&curr_s=5",
                                "/cgi-bin/dbeacon/prayerCall.pl?prod_string=p&pno=5&ma=1&time=18:42",
                                "/cgi-bin/dbeacon/getStates.pl",
                                "/cgi-bin/dbeacon/getMatchingCities.pl?state_id=SA&city_string=ma",
                                "/cgi-bin/dbeacon/getCityInfo.pl?aid=SA-G104515",
                                "/cgi-bin/dbeacon/ma/confirmSignup.pl?prod_string=p&vCode=1234567812345678",
                                "/",
                                "/readyz"};

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
    std::atomic<std::size_t> answered = 0;
    const auto count = [&answered](const std::string& reply) { answered += reply.empty() ? 0U : 1U; };
    std::atomic<int> atWork = kClients;
    std::vector<std::jthread> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                for (const char* const target : kTargets) {
                    count(Fetch(port, target));
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
    EXPECT_EQ(answered, kClients * kRounds * (std::size(kTargets) + 1));
}
