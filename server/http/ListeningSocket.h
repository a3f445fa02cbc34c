// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/ip/tcp.hpp>

#include <optional>
#include <string_view>

namespace beacond {

/// The address of a setting: "127.0.0.1:8750" or "[::1]:8750". Throws std::invalid_argument with a text for
/// the user.
[[nodiscard]] boost::asio::ip::tcp::endpoint ParseListenAddress(std::string_view text);

/// A listening socket, closed by the destructor.
class ListeningSocket final
{
public:
    /// Listens at @p endpoint; port 0 means any free port. Throws std::system_error, whose text names the
    /// address.
    [[nodiscard]] static ListeningSocket Open(const boost::asio::ip::tcp::endpoint& endpoint);

    /// The socket that the service manager has opened for this process (LISTEN_PID, LISTEN_FDS); nothing if
    /// there is none. Removes these variables and LISTEN_FDNAMES from the environment, so call it before
    /// other threads run. Throws std::runtime_error if there are several sockets, or if the socket is not a
    /// listening TCP socket.
    [[nodiscard]] static std::optional<ListeningSocket> Inherited();

    /// Throws std::system_error like Open if listening at @p endpoint is impossible. Accepts no connection.
    static void RequireFree(const boost::asio::ip::tcp::endpoint& endpoint);

    ListeningSocket(ListeningSocket&& other) noexcept;
    ListeningSocket& operator=(ListeningSocket&&) = delete;
    ~ListeningSocket();

    [[nodiscard]] boost::asio::ip::tcp::endpoint Endpoint() const;
    /// Whether the service manager keeps the socket open too.
    [[nodiscard]] bool IsInherited() const { return m_isInherited; }
    /// Releases the descriptor; the caller closes it.
    [[nodiscard]] int Release();

private:
    explicit ListeningSocket(int descriptor, bool isInherited = false);
    [[nodiscard]] static ListeningSocket Bind(const boost::asio::ip::tcp::endpoint& endpoint);

    int m_descriptor = -1;
    bool m_isInherited = false;
};

} // namespace beacond
