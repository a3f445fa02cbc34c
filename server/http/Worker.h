// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Connection.h"
#include "http/Message.h"
#include "http/ResponseHeader.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <exception>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace beacond {

struct HttpFigures;
struct HttpOptions;

/// The connections of one thread and their shared data. Context() may be used from any thread; everything
/// else runs on the worker's thread.
class Worker final
{
public:
    using Clock = Connection::Clock;

    struct ExchangeReturn
    {
        Worker* worker;
        void operator()(Exchange* exchange) const { worker->TakeBack(exchange); }
    };
    /// The memory for a request, reused for the next one.
    using ExchangeLease = std::unique_ptr<Exchange, ExchangeReturn>;

    Worker(const HttpOptions& options, const Handler& handler, HttpFigures& figures);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Runs until the last connection has ended after a Drain, or until the context is stopped.
    void Run();
    [[nodiscard]] boost::asio::io_context& Context() { return m_context; }

    void Begin(Connection::Socket socket, ConnectionLease lease, const boost::asio::ip::address& peer);
    /// Closes the connections that wait for a request; the others end with their current answer.
    void Drain();
    [[nodiscard]] bool IsDraining() const { return m_isDraining; }

    void Add(Connection& connection);
    void Remove(Connection& connection);

    [[nodiscard]] ExchangeLease LeaseExchange();
    [[nodiscard]] boost::asio::awaitable<Response> Answer(const Request& request)
    {
        return m_handler(request);
    }
    [[nodiscard]] const HttpOptions& Options() const { return m_options; }
    [[nodiscard]] HttpFigures& Figures() { return m_figures; }
    /// The delay of this thread: the smaller of its last two measurements, so that one pause of the machine
    /// does not count. An overdue measurement counts at once. The delay falls by at most half at each
    /// measurement, so that refusing does not switch on and off.
    [[nodiscard]] Clock::duration Delay() const;
    [[nodiscard]] std::string_view Date();
    void CountReply(unsigned status);

private:
    void TakeBack(Exchange* exchange);
    void ScheduleSweep();
    void Sweep();
    void MeasureDelay(Clock::duration late);
    void ReportFailure(const std::exception_ptr& failure);

    const HttpOptions& m_options;
    const Handler& m_handler;
    HttpFigures& m_figures;
    const Clock::duration m_sweepInterval;
    DateText m_date;
    Clock::duration m_lastLateness{};
    Clock::duration m_delay{};
    bool m_isDraining = false;
    bool m_isSweepScheduled = false;
    std::vector<std::unique_ptr<Exchange>> m_exchanges;
    std::unordered_set<Connection*> m_connections;
    // Destroyed before the members that the connections use, since it destroys the remaining connections.
    boost::asio::io_context m_context;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work;
    boost::asio::steady_timer m_sweepTimer;
};

} // namespace beacond
