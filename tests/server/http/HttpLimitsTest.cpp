// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ServerUnderTest.h"

#include <sys/resource.h>
#include <unistd.h>

#include <optional>
#include <thread>
#include <vector>

using beacond::HttpFigures;
using beacond::HttpOptions;
using beacond::Request;
using beacond::Response;
using namespace std::chrono_literals;

namespace {

bool IsServed(RawClient& client)
{
    client.Send("GET /served HTTP/1.0\r\n\r\n");
    return client.ReadToEnd().ends_with("/served");
}

// Answers "/large" with more bytes than the kernel buffers for a client that doesn't read, other paths with
// the path.
boost::asio::awaitable<Response> AnswerLargely(const Request& request)
{
    co_return Text(request.path == "/large" ? std::string(std::size_t{8} << 20, 'x') : request.path);
}

// A client that sends its header or body byte by byte, or reads its answer slowly.
class SlowClient
{
public:
    static SlowClient Make(const ServerUnderTest& under, std::size_t number)
    {
        const Kind kind = number < 500 ? Kind::Header : number < 980 ? Kind::Body : Kind::Reader;
        SlowClient slow{kind, under.Connect(kind == Kind::Reader ? 4096 : 0)};
        if (kind == Kind::Body) {
            slow.client.Send("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 16384\r\n\r\n");
        } else if (kind == Kind::Reader) {
            slow.client.Send("GET /large HTTP/1.1\r\nHost: h\r\n\r\n");
        }
        return slow;
    }
    void GoOn()
    {
        if (kind == Kind::Reader) {
            client.ReceivePart();
        } else {
            client.Send("G");
        }
    }

    enum class Kind { Header, Body, Reader };
    Kind kind;
    RawClient client;
};

// Limits the descriptors of the process to @p count during its lifetime.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(int count)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        rlimit present = m_before;
        present.rlim_cur = static_cast<rlim_t>(count);
        ::setrlimit(RLIMIT_NOFILE, &present);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    rlimit m_before{};
};

int LowestFreeDescriptor()
{
    const int descriptor = ::dup(0);
    ::close(descriptor);
    return descriptor;
}

} // namespace

// docs/service.md documents these values.
TEST(HttpOptions, defaults_areThoseOfTheDocumentation)
{
    const HttpOptions options;
    EXPECT_EQ(options.headerTime, 5s);
    EXPECT_EQ(options.bodyTime, 10s);
    EXPECT_EQ(options.answerTime, 10s);
    EXPECT_EQ(options.answerBytesPerSecond, 16U * 1024);
    EXPECT_EQ(options.writeTime, 10s);
    EXPECT_EQ(options.idleTime, 75s);
}

TEST(HttpLimits, phaseBeyondItsLimit_endsTheConnection)
{
    struct Row
    {
        const char* name;
        std::chrono::milliseconds HttpOptions::*limit;
        HttpFigures::Count HttpFigures::*count;
        const char* request;
        const char* answer; ///< the end of the answer
    };
    const std::vector<Row> rows = {
        {"nothing sent", &HttpOptions::headerTime, &HttpFigures::headerTimeouts, "", ""},
        {"half a header", &HttpOptions::headerTime, &HttpFigures::headerTimeouts, "GET / HTTP/1.1\r\n", ""},
        {"half of a second header", &HttpOptions::headerTime, &HttpFigures::headerTimeouts,
         "GET /a HTTP/1.1\r\nHost: h\r\n\r\nGET /b", "/a"},
        {"half a body", &HttpOptions::bodyTime, &HttpFigures::bodyTimeouts,
         "POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 9\r\n\r\nx", ""},
        {"no second request", &HttpOptions::idleTime, &HttpFigures::idleTimeouts,
         "GET /a HTTP/1.1\r\nHost: h\r\n\r\n", "/a"},
    };
    for (const Row& row : rows) {
        HttpOptions options;
        options.*row.limit = 250ms;
        const ServerUnderTest under(AnswerPath, options);
        RawClient client = under.Connect();
        client.Send(row.request);
        const std::string answer = client.ReadToEnd();
        EXPECT_TRUE(answer.ends_with(row.answer) && answer.empty() == std::string_view(row.answer).empty())
            << row.name;
        EXPECT_EQ(under.figures.*row.count, 1U) << row.name;
    }
}

TEST(HttpLimits, keptConnections_endByTheIdleLimitNotTheHeaderLimit)
{
    HttpOptions options;
    options.headerTime = 500ms;
    options.idleTime = 1500ms;
    const ServerUnderTest under(AnswerPath, options);
    // Many connections: sometimes a late event of a request that has been read ends the wait for the next
    // one.
    std::vector<RawClient> clients;
    for (int number = 0; number < 50; ++number) {
        clients.push_back(under.ConnectKept());
    }
    EXPECT_TRUE(Becomes([&under] { return under.figures.connectionsOpen == 0; }));
    EXPECT_EQ(under.figures.idleTimeouts, 50U);
    EXPECT_EQ(under.figures.headerTimeouts, 0U);
}

TEST(HttpLimits, clientThatDoesNotRead_isDropped)
{
    HttpOptions options;
    options.writeTime = 50ms;
    const ServerUnderTest under(AnswerLargely, options);
    RawClient client = under.Connect(4096);
    client.Send("GET /large HTTP/1.1\r\nHost: h\r\n\r\n");
    EXPECT_TRUE(
        Becomes([&under] { return under.figures.writeTimeouts == 1 && under.figures.connectionsOpen == 0; }));
}

TEST(HttpLimits, clientThatReadsSlowlyForEver_isDropped)
{
    HttpOptions options;
    options.answerTime = 100ms;
    options.answerBytesPerSecond = std::size_t{1} << 30;
    const ServerUnderTest under(AnswerLargely, options);
    RawClient client = under.Connect(4096);
    client.Send("GET /large HTTP/1.1\r\nHost: h\r\n\r\n");
    // The client reads each part in time, but not the whole answer.
    EXPECT_TRUE(Becomes([&under, &client] {
        client.ReceivePart();
        return under.figures.writeTimeouts == 1;
    }));
}

TEST(HttpLimits, thousandSlowClients_delayNoOther)
{
    HttpOptions options;
    options.maxConnectionsPerAddress = 2'000;
    options.headerTime = options.bodyTime = options.answerTime = 2s;
    options.answerBytesPerSecond = std::size_t{1} << 30;
    const DescriptorLimit limit(4'000);
    const ServerUnderTest under(AnswerLargely, options);
    std::vector<SlowClient> slow;
    for (std::size_t number = 0; number < 1'000; ++number) {
        slow.push_back(SlowClient::Make(under, number));
    }
    std::size_t served = 0;
    const auto dropped = [&figures = under.figures] {
        return figures.headerTimeouts + figures.bodyTimeouts + figures.writeTimeouts;
    };
    const auto end = std::chrono::steady_clock::now() + RawClient::kPatience;
    while (dropped() < slow.size() && std::chrono::steady_clock::now() < end) {
        for (SlowClient& client : slow) {
            client.GoOn();
        }
        RawClient good = under.Connect();
        ASSERT_TRUE(IsServed(good)) << served;
        ++served;
    }
    // Each request was served between two bytes of the slow clients, which were all connected for two
    // seconds.
    EXPECT_GT(served, 3U);
    EXPECT_EQ(under.figures.headerTimeouts, 500U);
    EXPECT_EQ(under.figures.bodyTimeouts, 480U);
    EXPECT_EQ(under.figures.writeTimeouts, 20U);
}

TEST(HttpLimits, clientThatSendsWithoutPause_isDroppedAndDelaysNoOther)
{
    HttpOptions options;
    options.headerTime = 500ms;
    const ServerUnderTest under(AnswerPath, options);
    std::thread flood([&under] {
        const RawClient client = under.Connect();
        const std::string emptyLines = Repeated("\r\n", 32'768);
        while (client.Send(emptyLines)) {
        }
    });
    for (int number = 0; number < 20; ++number) {
        RawClient good = under.Connect();
        EXPECT_TRUE(IsServed(good)) << number;
    }
    flood.join();
    EXPECT_EQ(under.figures.headerTimeouts, 1U);
}

TEST(HttpLimits, connectionBeyondTheLimit_isClosedAtOnce)
{
    struct Row
    {
        const char* name;
        std::size_t inAll;
        std::size_t perAddress;
        std::vector<std::string> proxies;
        HttpFigures::Count HttpFigures::*count; ///< null: the third connection is served
    };
    const std::vector<Row> rows = {
        {"in all", 2, 9, {}, &HttpFigures::refusedByTotal},
        {"of an address", 9, 2, {}, &HttpFigures::refusedByAddress},
        {"of a proxy", 9, 2, {"127.0.0.1"}, nullptr},
        {"in all, through a proxy", 2, 9, {"127.0.0.1"}, &HttpFigures::refusedByTotal},
    };
    for (const Row& row : rows) {
        HttpOptions options;
        options.maxConnections = row.inAll;
        options.maxConnectionsPerAddress = row.perAddress;
        options.proxies = beacond::ProxyList(row.proxies);
        const ServerUnderTest under(AnswerPath, options);
        RawClient first = under.ConnectKept();
        const RawClient second = under.ConnectKept();
        RawClient third = under.Connect();
        if (row.count == nullptr) {
            EXPECT_TRUE(IsServed(third)) << row.name;
            continue;
        }
        EXPECT_TRUE(third.IsClosedSilently()) << row.name;
        EXPECT_EQ(under.figures.*row.count, 1U) << row.name;
        first.Close();
        EXPECT_TRUE(Becomes([&under] {
            RawClient fourth = under.Connect();
            return IsServed(fourth);
        })) << row.name;
    }
}

TEST(HttpLimits, noDescriptorLeft_isRetriedAfterPauses)
{
    const ServerUnderTest under(AnswerPath);
    RawClient kept = under.ConnectKept();
    std::optional<RawClient> waiting;
    {
        const DescriptorLimit limit(LowestFreeDescriptor() + 1);
        waiting.emplace(
            under.Connect()); // takes the last descriptor, so that none is left to accept the connection
        ASSERT_TRUE(Becomes([&under] { return under.figures.acceptErrors > 0; }));
        const auto begin = std::chrono::steady_clock::now();
        ASSERT_TRUE(Becomes([&under] { return under.figures.acceptErrors > 2; }));
        EXPECT_GT(std::chrono::steady_clock::now() - begin, 100ms);
        EXPECT_TRUE(IsServed(kept));
    }
    EXPECT_TRUE(IsServed(*waiting));
}
