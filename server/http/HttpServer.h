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

/// Answers HTTP/1.0 and HTTP/1.1 at one address with a thread for each core.
class HttpServer final
{
public:
    /// Begins to answer. Throws std::system_error if a thread or a descriptor is missing.
    /// @param handler is called by all threads at once; its coroutine runs on the thread of its connection.
    ///   One that waits for another thread resumes there through the executor of the coroutine
    /// @param figures must outlive the server
    HttpServer(ListeningSocket listener, HttpOptions options, Handler handler, HttpFigures& figures);
    /// Ends all connections at once. A handler's coroutine that still waits is destroyed; what would resume
    /// it must have ended before.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    [[nodiscard]] unsigned short Port() const;

    /// Accepts no more connections, closes those without a request and waits for the others, each of which
    /// ends with its present answer. Answers whether all have ended within @p limit; the rest is cut off. The
    /// server answers nothing afterwards.
    bool Drain(std::chrono::milliseconds limit);

private:
    class Threads;
    std::unique_ptr<Threads> m_threads;
};

} // namespace beacond
