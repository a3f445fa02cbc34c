// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ServerUnderTest.h"

#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <atomic>
#include <future>
#include <mutex>
#include <stdexcept>
#include <vector>

using beacond::HttpOptions;
using beacond::Request;
using beacond::Response;
using boost::asio::awaitable;
using namespace std::chrono_literals;

namespace {

constexpr std::string_view kEnd = "\r\n\r\n";

// One request on a separate connection.
std::string Ask(const ServerUnderTest& under, const std::string& path, const std::string& fields = "")
{
    RawClient client = under.Connect();
    client.Send("GET " + path + " HTTP/1.0\r\n" + fields + "\r\n");
    return client.ReadToEnd();
}

// Collects the texts that a server reports.
class Reports
{
public:
    beacond::Report Taker()
    {
        return [this](std::string_view text) {
            const std::lock_guard lock(m_mutex);
            m_texts.emplace_back(text);
        };
    }
    [[nodiscard]] std::vector<std::string> All()
    {
        const std::lock_guard lock(m_mutex);
        return m_texts;
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_texts;
};

} // namespace

TEST(HttpServer, manyClientsAtOnce_eachGetsItsOwnAnswers)
{
    const ServerUnderTest under(AnswerPath);
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([&under, number] {
            RawClient client = under.Connect();
            for (int turn = 0; turn < 100; ++turn) {
                const std::string path = "/" + std::to_string(number) + "/" + std::to_string(turn) + "/";
                client.Send("GET " + path + " HTTP/1.1\r\nHost: h\r\n\r\n");
                EXPECT_EQ(BodyOf(client.ReadThrough(path)), path);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(under.figures.connectionsAccepted, 8U);
    EXPECT_EQ(under.figures.replies[2], 800U);
    EXPECT_TRUE(Becomes([&under] { return under.figures.connectionsOpen == 0; }));
}

TEST(HttpServer, handlerThrows_answers500AndGoesOn)
{
    const ServerUnderTest under([](const Request& request) -> awaitable<Response> {
        if (request.path == "/bad") {
            throw std::runtime_error("failed");
        }
        co_return co_await AnswerPath(request);
    });
    RawClient client = under.Connect();
    client.Send("GET /bad HTTP/1.1\r\nHost: h\r\n\r\nGET /good HTTP/1.0\r\n\r\n");
    EXPECT_EQ(WithoutDates(client.ReadThrough(kEnd)),
              "HTTP/1.1 500 Internal Server Error\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(BodyOf(client.ReadToEnd()), "/good");
    EXPECT_EQ(under.figures.handlerFailures, 1U);
    EXPECT_EQ(under.figures.replies[5], 1U);
}

TEST(HttpServer, answers_areWrittenByTheirStatusAndFields)
{
    const ServerUnderTest under([](const Request& request) -> awaitable<Response> {
        Response response;
        response.status = static_cast<unsigned>(std::stoul(request.path.substr(1)));
        response.contentType = "application/xml";
        response.body = "<root/>";
        response.headers = {{"ETag", "\"x\""}, {"X-Split", "a\r\nSet-Cookie: b"}};
        co_return response;
    });
    const std::string entity = "Content-Type: application/xml\r\nContent-Length: 7\r\n";
    const std::string rest = "ETag: \"x\"\r\nConnection: close\r\n\r\n";
    EXPECT_EQ(WithoutDates(Ask(under, "/404")), "HTTP/1.1 404 Not Found\r\n" + entity + rest + "<root/>");
    EXPECT_EQ(WithoutDates(Ask(under, "/304")), "HTTP/1.1 304 Not Modified\r\n" + rest);
    EXPECT_EQ(WithoutDates(Ask(under, "/204")), "HTTP/1.1 204 No Content\r\n" + rest);
}

TEST(HttpServer, largeAnswer_arrivesWhole)
{
    const std::string large(std::size_t{8} << 20, 'x');
    const ServerUnderTest under([&large](const Request&) -> awaitable<Response> { co_return Text(large); });
    EXPECT_TRUE(BodyOf(Ask(under, "/")) == large);
}

TEST(HttpServer, refusedClientThatStillSends_getsItsAnswer)
{
    const ServerUnderTest under(AnswerPath);
    RawClient client = under.Connect();
    client.Send("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 100000\r\n\r\n" + std::string(100'000, 'x'));
    EXPECT_EQ(client.ReadToEnd().substr(0, 12), "HTTP/1.1 413");
    EXPECT_FALSE(client.WasReset());
}

TEST(HttpServer, forwardedAddress_isTheClientOfAConfiguredProxy)
{
    const beacond::Handler answerClient = [](const Request& request) -> awaitable<Response> {
        co_return Text(request.client.to_string());
    };
    const std::string fields = "X-Forwarded-For: 198.51.100.7\r\nX-Forwarded-For: 192.0.2.1, 203.0.113.9\r\n";
    HttpOptions options;
    const ServerUnderTest bare(answerClient, options);
    EXPECT_EQ(BodyOf(Ask(bare, "/", fields)), "127.0.0.1");
    options.proxies = beacond::ProxyList({"127.0.0.0/8"});
    const ServerUnderTest behindProxy(answerClient, options);
    EXPECT_EQ(BodyOf(Ask(behindProxy, "/", fields)), "203.0.113.9");
    EXPECT_EQ(BodyOf(Ask(behindProxy, "/")), "127.0.0.1");
}

TEST(HttpServer, exceptionOnAThread_isReportedAndTheThreadGoesOn)
{
    Reports reports;
    HttpOptions options;
    options.reportError = reports.Taker();
    const ServerUnderTest under(
        [](const Request& request) -> awaitable<Response> {
            boost::asio::post(co_await boost::asio::this_coro::executor,
                              [] { throw std::runtime_error("broken"); });
            co_return co_await AnswerPath(request);
        },
        options);
    // Each of the two threads gets one of them.
    for (int number = 0; number < 4; ++number) {
        EXPECT_EQ(BodyOf(Ask(under, "/")), "/");
    }
    EXPECT_TRUE(Becomes([&under] { return under.figures.workerFailures == 4; }));
    EXPECT_EQ(reports.All(), std::vector<std::string>(4, "a thread of the server goes on after: broken"));
}

TEST(HttpServer, exceptionThatEndsAConnection_isReported)
{
    Reports reports;
    HttpOptions options;
    options.reportError = reports.Taker();
    options.reportWarning = [](std::string_view) { throw std::runtime_error("broken"); };
    const ServerUnderTest under(AnswerPath, options);
    EXPECT_EQ(Ask(under, "/", "X-Forwarded-For: 203.0.113.9\r\n"), "");
    EXPECT_EQ(BodyOf(Ask(under, "/")), "/");
    EXPECT_EQ(reports.All(), std::vector<std::string>(1, "a thread of the server goes on after: broken"));
}

TEST(HttpServer, forwardedByALocalAddressThatIsNoProxy_isOneWarning)
{
    const std::string field = "X-Forwarded-For: 203.0.113.9\r\n";
    Reports reports;
    HttpOptions options;
    options.reportWarning = reports.Taker();
    const ServerUnderTest bare(AnswerPath, options);
    (void)Ask(bare, "/");
    EXPECT_EQ(reports.All().size(), 0U);
    (void)Ask(bare, "/", field);
    (void)Ask(bare, "/", field);
    EXPECT_EQ(bare.figures.unlistedProxies, 2U);
    EXPECT_EQ(reports.All().size(), 1U);

    options.proxies = beacond::ProxyList({"127.0.0.1"});
    const ServerUnderTest behindProxy(AnswerPath, options);
    (void)Ask(behindProxy, "/", field);
    EXPECT_EQ(behindProxy.figures.unlistedProxies, 0U);
}

TEST(HttpServer, proxyThatNamesNoClient_isOneWarning)
{
    Reports reports;
    HttpOptions options;
    options.reportWarning = reports.Taker();
    options.proxies = beacond::ProxyList({"127.0.0.1"});
    const ServerUnderTest under(AnswerPath, options);
    (void)Ask(under, "/", "X-Forwarded-For: 203.0.113.9:51234\r\n");
    EXPECT_EQ(reports.All().size(), 0U);
    (void)Ask(under, "/", "X-Forwarded-For: unknown\r\n");
    (void)Ask(under, "/");
    EXPECT_EQ(under.figures.unreadableForwards, 2U);
    EXPECT_EQ(reports.All().size(), 1U);
}

TEST(HttpServer, pipelinedRequests_yieldToOtherConnections)
{
    constexpr int kRequests = 100;
    std::atomic<int> answered = 0;
    const ServerUnderTest under([&answered](const Request& request) -> awaitable<Response> {
        if (request.path == "/slow") {
            std::this_thread::sleep_for(5ms);
            ++answered;
        }
        co_return Text(std::to_string(answered) + " answered");
    });
    // The threads get the connections in turn.
    RawClient greedy = under.Connect();
    const RawClient ofOtherThread = under.Connect();
    RawClient other = under.Connect();
    greedy.Send(Repeated("GET /slow HTTP/1.1\r\nHost: h\r\n\r\n", kRequests));
    ASSERT_TRUE(Becomes([&answered] { return answered > 0; }));
    other.Send("GET /quick HTTP/1.0\r\n\r\n");
    EXPECT_LT(std::stoi(BodyOf(other.ReadToEnd())), kRequests);
}

TEST(HttpServer, delayOfTheThread_isInItsRequestsUntilItKeepsUpAgain)
{
    constexpr int kRequests = 8;
    HttpOptions options;
    options.bodyTime = 100ms; // the delay is measured more often with a shorter limit
    const ServerUnderTest under(
        [](const Request& request) -> awaitable<Response> {
            if (request.path == "/busy") {
                std::this_thread::sleep_for(25ms);
            }
            const auto delay = std::chrono::duration_cast<std::chrono::milliseconds>(request.delay);
            co_return Text(std::to_string(delay.count()) + "ms");
        },
        options);
    const auto delayOfNext = [](RawClient& client) { return std::stoi(BodyOf(client.ReadThrough("ms"))); };
    std::vector<RawClient> clients;
    for (int number = 0; number < 8; ++number) {
        clients.push_back(under.Connect());
    }
    for (const RawClient& client : clients) {
        client.Send(Repeated("GET /busy HTTP/1.1\r\nHost: h\r\n\r\n", kRequests));
    }
    int delay = 0;
    for (int number = 0; number < kRequests; ++number) {
        for (RawClient& client : clients) {
            delay = std::max(delay, delayOfNext(client));
        }
    }
    EXPECT_GE(delay, 50);
    EXPECT_TRUE(Becomes([&] {
        clients.front().Send("GET / HTTP/1.1\r\nHost: h\r\n\r\n");
        return delayOfNext(clients.front()) == 0;
    }));
}
