// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Worker.h"

#include <boost/asio/basic_socket_acceptor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <cstddef>
#include <memory>
#include <vector>

namespace beacond {

class ListeningSocket;

/// Accepts connections and distributes them to the workers. Runs on the thread of the first worker.
class Acceptor final
{
public:
    using Workers = std::vector<std::unique_ptr<Worker>>;

    Acceptor(ListeningSocket listener, const Workers& workers, ConnectionLimits& limits);

    /// Begins to accept.
    void Start();
    /// Closes the listening socket. First accepts the connections that have arrived; in a socket of the
    /// service manager they wait for the next start.
    void Stop();

private:
    using Socket =
        boost::asio::basic_socket_acceptor<boost::asio::ip::tcp, boost::asio::io_context::executor_type>;

    void AcceptWhenReady();
    void AcceptAfterPause();
    /// Starts to wait for connections. This needs memory: retries until it succeeds.
    template <typename Wait>
    void Arm(Wait wait);
    /// Accepts until no connection is left or @p most have been accepted. Returns false if no more can be
    /// opened now.
    bool AcceptAll(std::size_t most);
    void Distribute(int descriptor, const boost::asio::ip::tcp::endpoint& peer);

    const Workers& m_workers;
    ConnectionLimits& m_limits;
    Worker& m_home;
    std::size_t m_next = 0;
    Socket m_socket;
    boost::asio::steady_timer m_pause;
    const bool m_isInherited;
};

} // namespace beacond
