// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Only the HTTP library of the service: answers every request with "ok", like a web server with a file of two
// bytes.
#include "http/HttpFigures.h"
#include "http/HttpServer.h"
#include "http/ListeningSocket.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

boost::asio::awaitable<beacond::Response> AnswerOk(const beacond::Request&)
{
    beacond::Response response;
    response.contentType = "text/plain";
    response.body = "ok";
    co_return response;
}

void Serve(const char* address, const char* threads)
{
    beacond::HttpOptions options;
    options.threads = static_cast<unsigned>(std::strtoul(threads, nullptr, 10));
    options.proxies =
        beacond::ProxyList({"127.0.0.1"}); // no limit for the one address that all calls come from
    beacond::HttpFigures figures;
    // Also blocked in the threads of the server, which inherit this signal mask.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    beacond::HttpServer server(beacond::ListeningSocket::Open(beacond::ParseListenAddress(address)), options,
                               AnswerOk, figures);
    int signal = 0;
    sigwait(&signals, &signal);
    server.Drain(std::chrono::seconds(5));
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s ADDRESS:PORT THREADS\n", argv[0]);
        return 2;
    }
    try {
        Serve(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
