// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/ip/address.hpp>

#include <cstdint>
#include <string>

namespace beacond {

/// The IPv4 address in an IPv4-mapped IPv6 address (::ffff:192.0.2.1), otherwise the address itself.
[[nodiscard]] boost::asio::ip::address Unmapped(const boost::asio::ip::address& address);

/// The key under which the limits of one client are counted: an IPv4 address, or the /64 of an IPv6 address,
/// which one household gets.
[[nodiscard]] std::string NetworkOf(const boost::asio::ip::address& address);

/// The same as a number, different for each network.
[[nodiscard]] std::uint64_t NetworkNumberOf(const boost::asio::ip::address& address);

} // namespace beacond
