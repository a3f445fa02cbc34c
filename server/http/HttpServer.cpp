// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/HttpServer.h"

#include "http/Acceptor.h"
#include "http/ConnectionLimits.h"
#include "http/HttpFigures.h"
#include "http/ListeningSocket.h"
#include "http/Worker.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <future>
#include <thread>
#include <utility>
#include <vector>

namespace {

unsigned ThreadCount(unsigned wanted)
{
    return wanted > 0 ? wanted : std::max(1U, std::thread::hardware_concurrency());
}

} // namespace

namespace beacond {

class HttpServer::Threads final
{
public:
    Threads(ListeningSocket listener, HttpOptions options, Handler handler, HttpFigures& figures);
    ~Threads();
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

    [[nodiscard]] unsigned short Port() const { return m_port; }
    bool Drain(std::chrono::milliseconds limit);

private:
    struct Thread
    {
        std::future<void> end;
        std::thread thread;
    };

    [[nodiscard]] static Acceptor::Workers MakeWorkers(const HttpOptions& options, const Handler& handler,
                                                       HttpFigures& figures);
    void Run();
    void Stop();

    const HttpOptions m_options;
    const Handler m_handler;
    const unsigned short m_port;
    ConnectionLimits m_limits;
    const Acceptor::Workers m_workers;
    Acceptor m_acceptor;
    std::vector<Thread> m_threads;
};

HttpServer::Threads::Threads(ListeningSocket listener, HttpOptions options, Handler handler,
                             HttpFigures& figures)
    : m_options(std::move(options))
    , m_handler(std::move(handler))
    , m_port(listener.Endpoint().port())
    , m_limits(m_options.maxConnections, m_options.maxConnectionsPerAddress)
    , m_workers(MakeWorkers(m_options, m_handler, figures))
    , m_acceptor(std::move(listener), m_workers, m_limits)
{
    m_acceptor.Start();
    try {
        Run();
    } catch (...) {
        Stop();
        throw;
    }
}

HttpServer::Threads::~Threads()
{
    Stop();
}

Acceptor::Workers HttpServer::Threads::MakeWorkers(const HttpOptions& options, const Handler& handler,
                                                   HttpFigures& figures)
{
    Acceptor::Workers workers;
    for (unsigned count = ThreadCount(options.threads); count > 0; --count) {
        workers.push_back(std::make_unique<Worker>(options, handler, figures));
    }
    return workers;
}

void HttpServer::Threads::Run()
{
    m_threads.reserve(m_workers.size());
    for (const std::unique_ptr<Worker>& worker : m_workers) {
        std::packaged_task<void()> task([&worker = *worker] { worker.Run(); });
        std::future<void> end = task.get_future();
        m_threads.push_back({std::move(end), std::thread(std::move(task))});
    }
}

void HttpServer::Threads::Stop()
{
    for (const std::unique_ptr<Worker>& worker : m_workers) {
        worker->Context().stop();
    }
    for (Thread& thread : m_threads) {
        thread.thread.join();
    }
    m_threads.clear();
}

bool HttpServer::Threads::Drain(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    // Posted after the connections that the acceptor has distributed, so that each worker handles them first.
    boost::asio::post(m_workers.front()->Context(), [this] {
        m_acceptor.Stop();
        for (const std::unique_ptr<Worker>& worker : m_workers) {
            boost::asio::post(worker->Context(), [&worker = *worker] { worker.Drain(); });
        }
    });
    bool haveEnded = true;
    for (const Thread& thread : m_threads) {
        haveEnded = thread.end.wait_until(deadline) == std::future_status::ready && haveEnded;
    }
    Stop();
    return haveEnded;
}

HttpServer::HttpServer(ListeningSocket listener, HttpOptions options, Handler handler, HttpFigures& figures)
    : m_threads(
          std::make_unique<Threads>(std::move(listener), std::move(options), std::move(handler), figures))
{
}

HttpServer::~HttpServer() = default;

unsigned short HttpServer::Port() const
{
    return m_threads->Port();
}

bool HttpServer::Drain(std::chrono::milliseconds limit)
{
    return m_threads->Drain(limit);
}

} // namespace beacond
