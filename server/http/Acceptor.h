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

/// Accepts the connections and spreads them over the workers. Lives on the thread of the first one.
class Acceptor final
{
public:
    using Workers = std::vector<std::unique_ptr<Worker>>;

    Acceptor(ListeningSocket listener, const Workers& workers, ConnectionLimits& limits);

    /// Begins to accept.
    void Start();
    /// Closes the listening socket. What has arrived is accepted before, or waits for the next start in a
    /// socket of the service manager.
    void Stop();

private:
    using Socket =
        boost::asio::basic_socket_acceptor<boost::asio::ip::tcp, boost::asio::io_context::executor_type>;

    void AcceptWhenReady();
    void AcceptAfterPause();
    /// Begins to wait, which takes memory: tries until there is some.
    template <typename Wait>
    void Arm(Wait wait);
    /// Accepts until no connection is left or @p most have come. Answers false if no more can be opened now.
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
