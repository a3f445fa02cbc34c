// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/address.hpp>

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

enum class Method { Get, Head, Post, Other };

/// A field of a request's header.
struct RequestField
{
    std::string name; ///< in lower case
    std::string value;
};

/// One request within the limits. The texts are raw bytes: nothing is decoded.
struct Request
{
    Method method = Method::Get;
    std::string path;  ///< the target up to the first "?"
    std::string query; ///< everything after the first "?", also a "#" and the text after it
    std::string contentType;
    std::string body;
    std::vector<RequestField> fields; ///< of a POST; empty for other methods, which need none
    /// The peer, or the forwarded address where the peer is a configured proxy.
    boost::asio::ip::address client;
    /// The delay of the connection's thread by its last measurements; zero while it keeps up.
    std::chrono::steady_clock::duration delay{};
};

struct Response
{
    struct Header
    {
        std::string_view name; ///< a literal
        std::string value;
    };

    unsigned status = 200;
    std::string_view contentType = "text/plain; charset=utf-8"; ///< a literal
    std::string body;
    std::vector<Header> headers; ///< beyond Content-Type, Content-Length, Date and Connection
};

/// Answers a request. Runs on the thread of the connection and must not block it. After an exception the
/// server sends an empty 500.
using Handler = std::function<boost::asio::awaitable<Response>(const Request&)>;

} // namespace beacond
