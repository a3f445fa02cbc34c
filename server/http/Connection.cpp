// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/Connection.h"

#include "http/HttpFigures.h"
#include "http/HttpOptions.h"
#include "http/ResponseHeader.h"
#include "http/Worker.h"

#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

namespace asio = boost::asio;
using boost::system::error_code;

// After so many buffers a client that sends faster than it is answered yields to the other connections.
constexpr unsigned kMostReadsInARow = 4;
constexpr std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";
constexpr std::chrono::seconds kLingerTime{1};
constexpr std::size_t kLingerBytes = 262'144;

std::array<asio::const_buffer, 2> BuffersOf(std::string_view header, std::string_view body = {})
{
    return {asio::buffer(header), asio::buffer(body)};
}

beacond::Response EmptyResponse(unsigned status)
{
    beacond::Response response;
    response.status = status;
    response.contentType = {};
    return response;
}

} // namespace

namespace beacond {

Connection::Connection(Worker& worker, Socket socket, ConnectionLease lease, asio::ip::address peer)
    : m_worker(worker)
    , m_socket(std::move(socket))
    , m_lease(std::move(lease))
    , m_peer(std::move(peer))
{
    m_worker.Add(*this);
}

Connection::~Connection()
{
    m_worker.Remove(*this);
}

void Connection::Close()
{
    error_code ignored;
    m_socket.close(ignored);
}

void Connection::CloseIfLate(Clock::time_point now)
{
    if (m_phase == Phase::Handling || now < m_deadline) {
        return;
    }
    HttpFigures& figures = m_worker.Figures();
    if (m_phase == Phase::Header) {
        Increment(figures.headerTimeouts);
    } else if (m_phase == Phase::Body) {
        Increment(figures.bodyTimeouts);
    } else if (m_phase == Phase::Idle) {
        Increment(figures.idleTimeouts);
    } else if (m_phase == Phase::Writing) {
        Increment(figures.writeTimeouts);
    }
    Close();
}

void Connection::CloseIfIdle()
{
    const bool isWithoutRequest = m_phase == Phase::Idle || (m_phase == Phase::Header && !m_hasRequest);
    error_code failure;
    // Still answer a request whose event this thread has not handled yet.
    if (isWithoutRequest && (m_socket.available(failure) == 0 || failure)) {
        Close();
    }
}

asio::awaitable<void> Connection::Run()
{
    error_code failure;
    m_socket.non_blocking(true, failure);
    bool goesOn = co_await ServeRequests();
    while (goesOn && !m_worker.IsDraining()) {
        // Hold no buffer here: most of ten thousand connections are idle.
        goesOn = co_await Wait(Socket::wait_read, Phase::Idle, Clock::now() + m_worker.Options().idleTime);
        if (goesOn) {
            goesOn = co_await ServeRequests();
        }
    }
}

asio::awaitable<bool> Connection::ServeRequests()
{
    const Worker::ExchangeLease exchange = m_worker.LeaseExchange();
    bool goesOn = true;
    do {
        goesOn = co_await ReadRequest(*exchange);
        if (goesOn && exchange->reader.HasMessage()) {
            goesOn = co_await Answer(*exchange);
        }
        if (goesOn && exchange->reader.HasBytesLeft()) {
            // Pipelined requests wait for no event: yield to the other connections and to the sweep.
            co_await asio::post(m_socket.get_executor(), asio::use_awaitable);
        }
    } while (goesOn && exchange->reader.HasBytesLeft());
    co_return goesOn;
}

asio::awaitable<bool> Connection::ReadRequest(Exchange& exchange)
{
    RequestReader& reader = exchange.reader;
    RequestReader::State state = reader.Next();
    Phase phase = Phase::Handling;
    Clock::time_point deadline;
    while (state == RequestReader::State::NeedsInput) {
        if (reader.TakeContinue() && !co_await Write(BuffersOf(kContinue))) {
            co_return false;
        }
        error_code failure = asio::error::would_block;
        const std::size_t count = m_readsInARow < kMostReadsInARow ? Read(reader, failure) : 0;
        if (!failure) {
            ++m_readsInARow;
            state = reader.Append(count);
            continue;
        }
        if (failure != asio::error::would_block) {
            co_return false;
        }
        if (m_hasAnswered && !reader.HasBytesLeft() && !reader.IsInBody()) {
            co_return true; // a spurious wake-up: the event has been handled before
        }
        m_hasRequest = reader.HasBytesLeft() || reader.IsInBody();
        if (const Phase present = reader.IsInBody() ? Phase::Body : Phase::Header; phase != present) {
            phase = present;
            const HttpOptions& options = m_worker.Options();
            deadline = Clock::now() + (phase == Phase::Body ? options.bodyTime : options.headerTime);
        }
        if (!co_await Wait(Socket::wait_read, phase, deadline)) {
            co_return false;
        }
    }
    if (state == RequestReader::State::Refused) {
        co_await Refuse(exchange);
    }
    co_return state == RequestReader::State::Complete;
}

asio::awaitable<bool> Connection::Answer(Exchange& exchange)
{
    RequestReader& reader = exchange.reader;
    reader.SetOrigin(ClientOf(reader.ForwardedFor()), m_worker.Delay());
    Response response;
    bool hasFailed = false;
    try {
        response = co_await m_worker.Answer(reader.Message());
    } catch (...) {
        hasFailed = true;
    }
    if (hasFailed) {
        Increment(m_worker.Figures().handlerFailures);
        response = EmptyResponse(500);
    }
    const bool isKept = reader.IsKeptAlive() && !m_worker.IsDraining();
    const Persistence kept = reader.IsHttp11() ? Persistence::KeepAlive : Persistence::KeepAliveAsOfHttp10;
    WriteHeader(exchange.header, response, isKept ? kept : Persistence::Close, m_worker.Date());
    m_worker.CountReply(response.status);
    const bool hasBody = reader.Message().method != Method::Head && MayHaveBody(response.status);
    const std::string_view body = hasBody ? std::string_view(response.body) : std::string_view();
    if (!co_await Write(BuffersOf(exchange.header, body))) {
        co_return false;
    }
    // Linger: a client that did not ask to close may be sending its next request.
    if (!isKept && (reader.IsKeptAlive() || reader.HasUnreadBody() || reader.HasBytesLeft())) {
        co_await Linger(reader);
    }
    m_hasAnswered = true;
    co_return isKept;
}

asio::ip::address Connection::ClientOf(std::string_view forwardedFor)
{
    const HttpOptions& options = m_worker.Options();
    HttpFigures& figures = m_worker.Figures();
    if (!options.proxies.Contains(m_peer)) {
        if (!forwardedFor.empty() && IsLocal(m_peer) && figures.unlistedProxies.fetch_add(1) == 0) {
            options.reportWarning(
                "a loopback or private address sends X-Forwarded-For and is not in http.proxies: "
                "if it is a proxy, all its clients count as one");
        }
        return m_peer;
    }
    const std::optional<asio::ip::address> client = options.proxies.ClientIn(forwardedFor);
    if (!client && figures.unreadableForwards.fetch_add(1) == 0) {
        options.reportWarning(
            "an address in http.proxies sends a request without an X-Forwarded-For that can "
            "be read: if it does so for clients, they count as one");
    }
    return client.value_or(m_peer);
}

asio::awaitable<void> Connection::Refuse(Exchange& exchange)
{
    Increment(m_worker.Figures().requestsRefused);
    const unsigned status = exchange.reader.RefusalStatus();
    WriteHeader(exchange.header, EmptyResponse(status), Persistence::Close, m_worker.Date());
    m_worker.CountReply(status);
    if (co_await Write(BuffersOf(exchange.header))) {
        co_await Linger(exchange.reader);
    }
}

asio::awaitable<bool> Connection::Write(Buffers buffers)
{
    const HttpOptions& options = m_worker.Options();
    Clock::time_point last = Clock::time_point::max();
    while (asio::buffer_size(buffers) > 0) {
        error_code failure;
        std::size_t count = m_socket.write_some(buffers, failure);
        if (failure && failure != asio::error::would_block) {
            co_return false;
        }
        for (asio::const_buffer& buffer : buffers) {
            const std::size_t part = std::min(count, buffer.size());
            buffer += part;
            count -= part;
        }
        if (!failure) {
            continue;
        }
        const Clock::time_point now = Clock::now();
        if (last == Clock::time_point::max()) {
            const std::chrono::seconds perSize(asio::buffer_size(buffers) / options.answerBytesPerSecond);
            last = now + options.answerTime + perSize;
        }
        // The kernel reports a writable socket only when a third of its buffer is free, so that a client
        // can't read byte by byte.
        if (!co_await Wait(Socket::wait_write, Phase::Writing, std::min(now + options.writeTime, last))) {
            co_return false;
        }
    }
    co_return true;
}

asio::awaitable<void> Connection::Linger(RequestReader& reader)
{
    error_code failure;
    m_socket.shutdown(Socket::shutdown_send, failure);
    const Clock::time_point deadline = Clock::now() + kLingerTime;
    std::size_t count = 0;
    while (count < kLingerBytes) {
        reader.Clear();
        count += Read(reader, failure);
        if (failure == asio::error::would_block) {
            if (!co_await Wait(Socket::wait_read, Phase::Lingering, deadline)) {
                co_return;
            }
        } else if (failure) {
            co_return;
        }
    }
}

asio::awaitable<bool> Connection::Wait(Socket::wait_type what, Phase phase, Clock::time_point deadline)
{
    m_phase = phase;
    m_deadline = deadline;
    m_readsInARow = 0;
    error_code failure;
    co_await m_socket.async_wait(what, asio::redirect_error(asio::use_awaitable, failure));
    m_phase = Phase::Handling;
    co_return !failure;
}

std::size_t Connection::Read(RequestReader& reader, error_code& failure)
{
    const std::span<char> room = reader.Room();
    return m_socket.read_some(asio::buffer(room.data(), room.size()), failure);
}

} // namespace beacond
