// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/ip/address.hpp>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The reverse proxies that are trusted for X-Forwarded-For.
class ProxyList final
{
public:
    ProxyList() = default;
    /// @param entries addresses ("192.0.2.1") and networks ("10.0.0.0/8", "2001:db8::/32")
    /// Throws std::invalid_argument, whose text names the entry that is neither.
    explicit ProxyList(const std::vector<std::string>& entries);

    [[nodiscard]] bool Contains(const boost::asio::ip::address& address) const;

    /// The client that @p forwardedFor names, the X-Forwarded-For of a request from a proxy: the last entry
    /// that is no proxy of this list, with or without a port; the first one if all are proxies. Nothing if
    /// the entry can't be read.
    [[nodiscard]] std::optional<boost::asio::ip::address> ClientIn(std::string_view forwardedFor) const;

private:
    using Bytes = std::array<unsigned char, 16>;
    struct Network
    {
        Bytes bytes{};
        unsigned prefix = 0;
    };

    [[nodiscard]] static Network ParseNetwork(const std::string& entry);

    std::vector<Network> m_networks;
};

/// Whether a proxy of the same operator may have this address: the loopback, a private or link-local network.
[[nodiscard]] bool IsLocal(const boost::asio::ip::address& address);

} // namespace beacond
