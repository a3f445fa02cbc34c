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

/// The reverse proxies whose X-Forwarded-For is trusted.
class ProxyList final
{
public:
    ProxyList() = default;
    /// @param entries addresses ("192.0.2.1") and networks ("10.0.0.0/8", "2001:db8::/32")
    /// Throws std::invalid_argument if an entry is neither; the text names it.
    explicit ProxyList(const std::vector<std::string>& entries);

    [[nodiscard]] bool Contains(const boost::asio::ip::address& address) const;

    /// The client named by @p forwardedFor, the X-Forwarded-For of a request from a proxy: the last entry
    /// that is not a proxy of this list, with or without a port; the first entry if all are proxies. Nothing
    /// if that entry can't be read.
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

/// Whether the operator's own proxy could have this address: a loopback, private or link-local address.
[[nodiscard]] bool IsLocal(const boost::asio::ip::address& address);

} // namespace beacond
