// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Becomes.h"
#include "server/app/ServiceFixture.h"
#include "server/messages/ScriptedServer.h"
#include "store/Sqlite.h"

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <map>
#include <mutex>
#include <regex>

using testing::HasSubstr;

/// The real program with a provider on the loopback, killed while it sends.
class KilledSender : public ServiceFixture
{
protected:
    static constexpr int kPhones = 3;

    KilledSender()
    {
        Configure("[messages]\nchannels = [\"web\"]\n[[messages.channel]]\nname = \"web\"\ntype = \"http\"\n"
                  "kind = \"mail\"\nbody_type = \"text\"\nbody = \"{address} {text}\"\nconnections = 1\n"
                  "timeout = 1\nper_second = 1000\nurl = \"http://127.0.0.1:" +
                  std::to_string(provider.Port()) + "/\"\n");
    }

    void Play(Conversation& client)
    {
        for (std::string request = client.ReadRequest(); !request.empty(); request = client.ReadRequest()) {
            const std::string body = request.substr(request.find("\r\n\r\n") + 4);
            const bool isText = body.find("Maghrib") != std::string::npos;
            {
                const std::lock_guard lock(mutex);
                std::smatch match;
                if (std::regex_search(body, match, std::regex("personal code: ([0-9 ]{19})"))) {
                    code = std::regex_replace(match[1].str(), std::regex(" "), "");
                }
                texts[body] += isText ? 1 : 0;
            }
            if (isText && beforeReceipt && !beforeReceipt(client)) {
                return;
            }
            client.Write("HTTP/1.1 200 x\r\nContent-Length: 0\r\n\r\n");
        }
    }
    /// Registers phones, and asks for a text for each.
    void Queue(unsigned short port)
    {
        for (int phone = 0; phone < kPhones; ++phone) {
            const std::string name = "installation-of-pc" + std::to_string(phone);
            ASSERT_THAT(PostSignup(port, "address=a%40" + name + ".example"), HasSubstr("on its way"));
            ASSERT_THAT(Fetch(port, kScripts + "ma/confirmSignup.pl?prod_string=" + name + "&vCode=" + code),
                        HasSubstr("result=\"1\""));
        }
        for (int phone = 0; phone < kPhones; ++phone) {
            ASSERT_EQ(Fetch(port, kScripts + "prayerCall.pl?prod_string=installation-of-pc" +
                                      std::to_string(phone) + "&pno=5&ma=1&time=18:42"),
                      "<root/>");
        }
    }
    int Sent()
    {
        const std::lock_guard lock(mutex);
        int sum = 0;
        for (const auto& [text, count] : texts) {
            sum += count;
        }
        return sum;
    }
    void Kill()
    {
        service->Signal(SIGKILL);
        ASSERT_EQ(service->Wait().status, 128 + SIGKILL);
    }
    /// After a kill in one text: the others arrive once, that one twice, and that is counted.
    void ExpectOneDouble()
    {
        ASSERT_NE(Serve(), 0);
        const unsigned short metricsPort = service->AwaitMetricsPort();
        ASSERT_TRUE(Becomes([&] { return Sent() == kPhones + 1; }));
        ASSERT_TRUE(Becomes([&] { return Run({"outbox"}).output.empty(); }));
        const std::string metrics = Fetch(metricsPort, "/metrics");
        EXPECT_THAT(metrics, HasSubstr("\nbeacond_texts_doubled_total 1\n"));
        EXPECT_EQ(Terminate().status, 0);
        EXPECT_EQ(Sent(), kPhones + 1);
        int doubled = 0;
        for (const auto& [text, count] : texts) {
            doubled += count == 2 ? 1 : 0;
        }
        EXPECT_EQ(doubled, 1);
    }

    std::mutex mutex;
    std::string code;
    std::map<std::string, int> texts;
    /// False to leave the request without an answer.
    std::function<bool(Conversation&)> beforeReceipt;
    ScriptedServer provider{[this](Conversation& client) { Play(client); }};
};

TEST_F(KilledSender, betweenRequestAndReceipt_repeatsOneText)
{
    std::atomic<bool> isFirst = true;
    beforeReceipt = [&](Conversation& client) {
        if (isFirst.exchange(false)) {
            client.Hang();
            return false;
        }
        return true;
    };
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    Queue(port);
    ASSERT_TRUE(Becomes([&] { return Sent() == 1; }));
    Kill();
    ExpectOneDouble();
}

TEST_F(KilledSender, betweenReceiptAndItsRecord_repeatsOneText)
{
    std::atomic<bool> isFirst = true;
    std::optional<beacond::Database> lock;
    beforeReceipt = [&](Conversation&) {
        if (isFirst.exchange(false)) {
            // The receipt can't be recorded while another process holds the lock.
            lock.emplace(folder.File("state/service.db"));
            lock->Execute("BEGIN IMMEDIATE");
        }
        return true;
    };
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    Queue(port);
    ASSERT_TRUE(service->AwaitLog("database is locked"));
    Kill();
    lock.reset();
    ExpectOneDouble();
}
