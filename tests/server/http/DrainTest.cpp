// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ServerUnderTest.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <atomic>
#include <future>

using beacond::HttpOptions;
using beacond::Request;
using beacond::Response;
using boost::asio::awaitable;
using namespace std::chrono_literals;

namespace {

// Answers "/held" when the gate opens, other paths at once.
class Gate
{
public:
    beacond::Handler Handler()
    {
        return [this](const Request& request) -> awaitable<Response> {
            ++m_held;
            boost::asio::steady_timer timer(co_await boost::asio::this_coro::executor);
            while (request.path == "/held" && !m_isOpen) {
                timer.expires_after(1ms);
                co_await timer.async_wait(boost::asio::use_awaitable);
            }
            --m_held;
            co_return co_await AnswerPath(request);
        };
    }

    void Open() { m_isOpen = true; }
    [[nodiscard]] bool IsHolding() const { return m_held > 0; }

private:
    std::atomic<int> m_held = 0;
    std::atomic<bool> m_isOpen = false;
};

} // namespace

TEST(Drain, requestUnderWay_isAnsweredAndIdleConnectionsAreClosed)
{
    Gate gate;
    ServerUnderTest under(gate.Handler());
    RawClient idle = under.ConnectKept();
    RawClient held = under.Connect();
    held.Send("GET /held HTTP/1.1\r\nHost: h\r\n\r\nGET /next HTTP/1.1\r\nHost: h\r\n\r\n");
    ASSERT_TRUE(Becomes([&gate] { return gate.IsHolding(); }));
    std::future<bool> drained = under.StartDrain();
    EXPECT_TRUE(idle.IsClosedSilently());
    EXPECT_ANY_THROW(under.Connect());
    gate.Open();
    EXPECT_EQ(WithoutDates(held.ReadToEnd()),
              "HTTP/1.1 200 OK\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: "
              "5\r\nConnection: close\r\n\r\n/held");
    held.Close();
    EXPECT_TRUE(drained.get());
    EXPECT_EQ(under.figures.connectionsOpen, 0U);
}

TEST(Drain, connectionWithoutAByteOfARequest_isClosed)
{
    HttpOptions options;
    options.headerTime = 60s;
    ServerUnderTest under(AnswerPath, options);
    RawClient silent = under.Connect();
    ASSERT_TRUE(Becomes([&under] { return under.figures.connectionsOpen == 1; }));
    EXPECT_TRUE(under.server.Drain(RawClient::kPatience));
    EXPECT_TRUE(silent.IsClosedSilently());
}

TEST(Drain, requestNotYetHandledByTheThread_isAnswered)
{
    std::promise<void> opened;
    std::atomic<bool> isBusy = false;
    const auto handler = [&isBusy,
                          gate = opened.get_future().share()](const Request& request) -> awaitable<Response> {
        if (request.path == "/busy") {
            isBusy = true;
            gate.wait();
        }
        co_return co_await AnswerPath(request);
    };
    ServerUnderTest under(handler);
    // The threads get the connections in turn; the acceptor runs on the first thread.
    const RawClient ofFirstThread = under.ConnectKept();
    RawClient busy = under.ConnectKept();
    const RawClient alsoOfFirstThread = under.ConnectKept();
    RawClient late = under.ConnectKept();
    busy.Send("GET /busy HTTP/1.1\r\nHost: h\r\n\r\n");
    ASSERT_TRUE(Becomes([&isBusy] { return isBusy.load(); }));
    late.Send("GET /late HTTP/1.1\r\nHost: h\r\n\r\n");
    std::future<bool> drained = under.StartDrain();
    EXPECT_TRUE(Becomes([&under] { return under.figures.connectionsOpen == 2; }));
    opened.set_value();
    EXPECT_EQ(BodyOf(late.ReadToEnd()), "/late");
    late.Close();
    busy.Close();
    EXPECT_TRUE(drained.get());
}

TEST(Drain, withoutConnections_endsAtOnce)
{
    ServerUnderTest under(AnswerPath);
    EXPECT_TRUE(under.server.Drain(RawClient::kPatience));
}

TEST(Drain, beyondItsLimit_closesTheRest)
{
    Gate gate;
    RawClient held = [&gate] {
        ServerUnderTest under(gate.Handler());
        RawClient client = under.Connect();
        client.Send("GET /held HTTP/1.0\r\n\r\n");
        EXPECT_TRUE(Becomes([&gate] { return gate.IsHolding(); }));
        EXPECT_FALSE(under.server.Drain(50ms));
        return client;
    }();
    EXPECT_TRUE(held.IsClosedSilently());
}
