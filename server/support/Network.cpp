// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Network.h"

#include <algorithm>

namespace beacond {

std::string NetworkOf(const boost::asio::ip::address& address)
{
    if (address.is_v4()) {
        return address.to_string();
    }
    auto bytes = address.to_v6().to_bytes();
    if (address.to_v6().is_v4_mapped()) {
        return boost::asio::ip::make_address_v4(boost::asio::ip::v4_mapped, address.to_v6()).to_string();
    }
    std::fill(bytes.begin() + 8, bytes.end(), static_cast<unsigned char>(0));
    return boost::asio::ip::address_v6(bytes).to_string() + "/64";
}

// An IPv4 address takes a prefix of the multicast range, from which no connection comes.
std::uint64_t NetworkNumberOf(const boost::asio::ip::address& address)
{
    constexpr std::uint64_t kIpv4 = 0xFFFF'FFFF'0000'0000U;
    if (address.is_v4()) {
        return kIpv4 | address.to_v4().to_uint();
    }
    if (address.to_v6().is_v4_mapped()) {
        return kIpv4 |
               boost::asio::ip::make_address_v4(boost::asio::ip::v4_mapped, address.to_v6()).to_uint();
    }
    const auto bytes = address.to_v6().to_bytes();
    std::uint64_t number = 0;
    for (std::size_t index = 0; index < 8; ++index) {
        number = (number << 8) | bytes[index];
    }
    return number;
}

} // namespace beacond
