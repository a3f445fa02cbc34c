// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ProviderFixture.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <set>
#include <string>

using testing::HasSubstr;
using testing::Not;

using SendingFaultsTest = ProviderFixture;

namespace {

// The value of that line; -1 if there is none.
int CountOf(const std::string& metrics, const std::string& name)
{
    const std::size_t line = metrics.find('\n' + name + ' ');
    return line == std::string::npos ? -1 : std::atoi(metrics.c_str() + line + name.size() + 2);
}

} // namespace

// KilledSender states the same for kills.
TEST_F(SendingFaultsTest, providerThatFailsAtFirst_getsEachTextAndUncertainOnesAreCounted)
{
    const std::map<std::string, ScriptedServer::Script> faults = {
        {"hangs", [](Conversation& client) { client.Hang(); }},
        {"drips",
         [](Conversation& client) {
             client.Write("HTTP/1.1 2");
             client.Drip('0');
         }},
        {"closes", [](Conversation&) {}},
        {"fails", [](Conversation& client) { client.Write("HTTP/1.1 500 x\r\nContent-Length: 0\r\n\r\n"); }},
        {"lies",
         [](Conversation& client) { client.Write("HTTP/1.1 200 x\r\nContent-Length: 4\r\n\r\nfull"); }},
    };
    constexpr int kUncertain = 5;
    std::set<std::string> seen;
    instead = [&](Conversation& client, const std::string& address) {
        const std::string name = address.substr(2, address.find('.') - 2);
        {
            const std::lock_guard lock(mutex);
            if (!seen.insert(name).second) {
                return false;
            }
        }
        faults.at(name)(client);
        return true;
    };
    ConfigureProvider("connections = 8\n");
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    const unsigned short metricsPort = service->AwaitMetricsPort();
    for (const auto& [name, fault] : faults) {
        Register(port, "a@" + name + ".example", name);
    }
    for (const auto& [name, fault] : faults) {
        EXPECT_EQ(Call(port, name, 5), "<root/>");
    }
    EXPECT_TRUE(Drained());
    std::map<std::string, int> expected;
    for (const auto& [name, fault] : faults) {
        expected["a@" + name + ".example"] = 1;
    }
    EXPECT_EQ(Texts(), expected) << "those that the provider has confirmed";
    const std::string metrics = Fetch(metricsPort, "/metrics");
    // On a busy machine a good reply can be late too.
    const int uncertain = CountOf(metrics, "beacond_text_attempts_uncertain_total");
    EXPECT_GE(uncertain, kUncertain);
    EXPECT_EQ(CountOf(metrics, "beacond_texts_doubled_total"), uncertain);
    EXPECT_EQ(CountOf(metrics, "beacond_text_attempts_repeated_total"), uncertain);
    EXPECT_EQ(CountOf(metrics, "beacond_channel_failures_total{channel=\"web\"}"), uncertain);
    EXPECT_EQ(CountOf(metrics, "beacond_texts_ended_total{outcome=\"sent\"}"), 5);
    EXPECT_THAT(Terminate().errors, Not(HasSubstr(".example")));
}

TEST_F(SendingFaultsTest, providerWithoutAName_getsTheTextOnceItsNameIsKnown)
{
    ConfigureProvider();
    unsigned short port = Serve();
    ASSERT_NE(port, 0);
    Register(port, "a@b.example", "pc");
    EXPECT_EQ(Terminate().status, 0);

    ConfigureProvider("url = \"https://provider.invalid/\"\n");
    port = Serve();
    EXPECT_EQ(Call(port, "pc", 5), "<root/>");
    EXPECT_TRUE(service->AwaitLog("channel web: "));
    EXPECT_TRUE(Becomes(
        [&] { return Run({"outbox"}).output.find("attempts=1\tstate=retry in ") != std::string::npos; }));
    EXPECT_EQ(Terminate().status, 0);

    ConfigureProvider();
    ASSERT_NE(Serve(), 0);
    const unsigned short metricsPort = service->AwaitMetricsPort();
    EXPECT_TRUE(Drained());
    EXPECT_EQ(Texts(), (std::map<std::string, int>{{"a@b.example", 1}}));
    EXPECT_THAT(Fetch(metricsPort, "/metrics"), HasSubstr("\nbeacond_texts_doubled_total 0\n"));
}
