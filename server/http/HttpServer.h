// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/HttpOptions.h"
#include "http/Message.h"

#include <chrono>
#include <memory>

namespace beacond {

struct HttpFigures;
class ListeningSocket;

/// Answers HTTP/1.0 and HTTP/1.1 at one address, by default with one thread for each core.
class HttpServer final
{
public:
    /// Starts the server. Throws std::system_error if no thread or descriptor can be created.
    /// @param handler is called by several threads at once; its coroutine runs on the thread of the
    ///   connection. A coroutine that awaits another thread must resume through its own executor
    /// @param figures must outlive the server
    HttpServer(ListeningSocket listener, HttpOptions options, Handler handler, HttpFigures& figures);
    /// Closes all connections at once. A suspended coroutine of a handler is destroyed; the object that would
    /// resume it must have ended before.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    [[nodiscard]] unsigned short Port() const;

    /// Accepts no more connections, closes the connections without a request and waits for the others, each
    /// of which ends with its current answer. Returns whether all have ended within @p limit; the rest is
    /// closed. The server answers nothing afterwards.
    bool Drain(std::chrono::milliseconds limit);

private:
    class Threads;
    std::unique_ptr<Threads> m_threads;
};

} // namespace beacond
