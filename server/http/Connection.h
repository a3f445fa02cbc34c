// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/ConnectionLimits.h"
#include "http/RequestReader.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <array>
#include <chrono>
#include <string>

namespace beacond {

class Worker;

/// The memory that a connection needs only during a request.
struct Exchange
{
    RequestReader reader;
    std::string header; ///< of the answer
};

/// One connection, from its acceptance to its end. Used only on the thread of its worker.
class Connection final
{
public:
    using Clock = std::chrono::steady_clock;
    using Socket =
        boost::asio::basic_stream_socket<boost::asio::ip::tcp, boost::asio::io_context::executor_type>;

    Connection(Worker& worker, Socket socket, ConnectionLease lease, boost::asio::ip::address peer);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Answers the requests of the connection, one after the other, until it ends.
    [[nodiscard]] boost::asio::awaitable<void> Run();

    /// Closes the connection if it waits for the client and the time limit has passed.
    void CloseIfLate(Clock::time_point now);
    /// Closes the connection unless a part of a request has arrived.
    void CloseIfIdle();

private:
    /// In each phase except Handling the connection waits for the client.
    enum class Phase { Handling, Header, Body, Idle, Writing, Lingering };
    using Buffers = std::array<boost::asio::const_buffer, 2>;

    // Each returns whether the connection goes on.
    boost::asio::awaitable<bool> ServeRequests();
    /// Returns true without a message after a spurious wake-up.
    boost::asio::awaitable<bool> ReadRequest(Exchange& exchange);
    boost::asio::awaitable<bool> Answer(Exchange& exchange);
    boost::asio::awaitable<bool> Write(Buffers buffers);
    boost::asio::awaitable<bool> Wait(Socket::wait_type what, Phase phase, Clock::time_point deadline);

    boost::asio::awaitable<void> Refuse(Exchange& exchange);
    /// Waits for the client to close. Closing a socket with unread bytes makes the kernel reset the
    /// connection, and the client could lose the answer.
    boost::asio::awaitable<void> Linger(RequestReader& reader);

    void Close();
    [[nodiscard]] std::size_t Read(RequestReader& reader, boost::system::error_code& failure);
    [[nodiscard]] boost::asio::ip::address ClientOf(std::string_view forwardedFor);

    Worker& m_worker;
    Socket m_socket;
    ConnectionLease m_lease;
    boost::asio::ip::address m_peer;
    bool m_hasAnswered = false;
    bool m_hasRequest = false;  ///< the first byte of a request has been read
    unsigned m_readsInARow = 0; ///< without a wait between them
    Phase m_phase = Phase::Handling;
    Clock::time_point m_deadline = Clock::time_point::max();
};

} // namespace beacond
