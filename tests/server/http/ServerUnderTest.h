// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RawClient.h"
#include "http/HttpFigures.h"
#include "http/HttpServer.h"
#include "http/ListeningSocket.h"
#include "server/Becomes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <string>
#include <string_view>
#include <utility>

/// A server on any free port of the loopback.
struct ServerUnderTest
{
    explicit ServerUnderTest(beacond::Handler handler, beacond::HttpOptions options = {})
        : server(beacond::ListeningSocket::Open({boost::asio::ip::address_v4::loopback(), 0}),
                 WithTwoThreads(std::move(options)), std::move(handler), figures)
    {
    }

    [[nodiscard]] RawClient Connect(int receiveBuffer = 0) const
    {
        return RawClient(server.Port(), receiveBuffer);
    }

    /// A connection after its first answer, waiting for the next request.
    [[nodiscard]] RawClient ConnectKept() const
    {
        RawClient client = Connect();
        client.Send("GET /kept HTTP/1.1\r\nHost: h\r\n\r\n");
        EXPECT_NE(client.ReadThrough("/kept").find("200 OK"), std::string::npos);
        return client;
    }

    /// Drains the server on another thread.
    std::future<bool> StartDrain()
    {
        return std::async(std::launch::async, [this] { return server.Drain(RawClient::kPatience); });
    }

    static beacond::HttpOptions WithTwoThreads(beacond::HttpOptions options)
    {
        options.threads = 2;
        return options;
    }

    beacond::HttpFigures figures;
    beacond::HttpServer server;
};

[[nodiscard]] inline beacond::Response Text(std::string body)
{
    beacond::Response response;
    response.body = std::move(body);
    return response;
}

/// Answers each request with its path.
inline boost::asio::awaitable<beacond::Response> AnswerPath(const beacond::Request& request)
{
    co_return Text(request.path);
}

[[nodiscard]] inline std::string Repeated(const std::string& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

/// The body of one answer.
[[nodiscard]] inline std::string BodyOf(const std::string& answer)
{
    constexpr std::string_view kEnd = "\r\n\r\n";
    return answer.substr(std::min(answer.find(kEnd) + kEnd.size(), answer.size()));
}
