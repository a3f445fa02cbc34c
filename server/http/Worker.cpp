// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/Worker.h"

#include "http/HttpFigures.h"
#include "http/HttpOptions.h"

#include <boost/asio/co_spawn.hpp>

#include <algorithm>
#include <ctime>
#include <new>
#include <utility>

namespace {

namespace asio = boost::asio;

// Any further free buffers are deleted after a peak.
constexpr std::size_t kSpareExchanges = 64;

// Often enough for the shortest limit, but at most four times a second.
beacond::Worker::Clock::duration SweepIntervalOf(const beacond::HttpOptions& options)
{
    const auto shortest = std::min(
        {options.headerTime, options.bodyTime, options.idleTime, options.writeTime, options.answerTime});
    return std::clamp(shortest / 4, std::chrono::milliseconds(5), std::chrono::milliseconds(250));
}

} // namespace

namespace beacond {

Worker::Worker(const HttpOptions& options, const Handler& handler, HttpFigures& figures)
    : m_options(options)
    , m_handler(handler)
    , m_figures(figures)
    , m_sweepInterval(SweepIntervalOf(options))
    , m_context(1)
    , m_work(m_context.get_executor())
    , m_sweepTimer(m_context)
{
}

Worker::~Worker() = default;

void Worker::Run()
{
    for (;;) {
        try {
            m_context.run();
            return;
        } catch (const std::bad_alloc&) {
            // No memory for a new connection: close it. The others go on.
            Increment(m_figures.acceptErrors);
        } catch (...) {
            ReportFailure(std::current_exception());
        }
    }
}

void Worker::ReportFailure(const std::exception_ptr& failure)
{
    Increment(m_figures.workerFailures);
    std::string reason = "unknown";
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        reason = error.what();
    } catch (...) {
    }
    m_options.reportError("a thread of the server goes on after: " + reason);
}

void Worker::Begin(Connection::Socket socket, ConnectionLease lease, const asio::ip::address& peer)
{
    const auto serve = [](Worker& worker, Connection::Socket taken, ConnectionLease held,
                          asio::ip::address client) -> asio::awaitable<void> {
        Connection connection(worker, std::move(taken), std::move(held), std::move(client));
        co_await connection.Run();
    };
    const auto end = [this](const std::exception_ptr& failure) {
        if (failure) {
            ReportFailure(failure);
        }
    };
    asio::co_spawn(m_context, serve(*this, std::move(socket), std::move(lease), peer), end);
}

void Worker::Drain()
{
    m_isDraining = true;
    if (m_connections.empty()) {
        m_context.stop();
    }
    for (Connection* connection : m_connections) {
        connection->CloseIfIdle();
    }
}

void Worker::Add(Connection& connection)
{
    m_connections.insert(&connection);
    Increment(m_figures.connectionsOpen);
    ScheduleSweep();
}

void Worker::Remove(Connection& connection)
{
    m_connections.erase(&connection);
    Decrement(m_figures.connectionsOpen);
    if (m_isDraining && m_connections.empty()) {
        m_context.stop();
    }
}

Worker::ExchangeLease Worker::LeaseExchange()
{
    std::unique_ptr<Exchange> exchange;
    if (m_exchanges.empty()) {
        exchange = std::make_unique<Exchange>();
    } else {
        exchange = std::move(m_exchanges.back());
        m_exchanges.pop_back();
        exchange->reader.Clear();
    }
    return {exchange.release(), ExchangeReturn{this}};
}

void Worker::TakeBack(Exchange* exchange)
{
    std::unique_ptr<Exchange> taken(exchange);
    if (m_exchanges.size() < kSpareExchanges) {
        m_exchanges.push_back(std::move(taken));
    }
}

std::string_view Worker::Date()
{
    return m_date.At(std::time(nullptr));
}

void Worker::CountReply(unsigned status)
{
    Increment(m_figures.replies[std::min<std::size_t>(status / 100, m_figures.replies.size() - 1)]);
}

// One timer for all connections: a timer for each would cost two system calls for each request.
void Worker::ScheduleSweep()
{
    if (m_isSweepScheduled) {
        return;
    }
    m_sweepTimer.expires_after(m_sweepInterval);
    m_sweepTimer.async_wait([this](const boost::system::error_code& failure) {
        if (!failure) {
            Sweep();
        }
    });
    m_isSweepScheduled = true; // set last: if memory runs out above, the next connection schedules it
}

void Worker::Sweep()
{
    m_isSweepScheduled = false;
    const Clock::time_point now = Clock::now();
    MeasureDelay(now - m_sweepTimer.expiry());
    for (Connection* connection : m_connections) {
        connection->CloseIfLate(now);
    }
    if (!m_connections.empty()) {
        ScheduleSweep();
    } else {
        m_lastLateness = m_delay = {};
    }
}

Worker::Clock::duration Worker::Delay() const
{
    return std::max(m_delay, std::min(Clock::now() - m_sweepTimer.expiry(), m_lastLateness));
}

void Worker::MeasureDelay(Clock::duration late)
{
    // The timer itself can be some milliseconds late.
    constexpr std::chrono::milliseconds kTimely{10};
    const Clock::duration lasting = std::min(late, std::exchange(m_lastLateness, late));
    m_delay = std::max(lasting, m_delay / 2);
    if (m_delay < kTimely) {
        m_delay = {};
    }
}

} // namespace beacond
