// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Network.h"

#include <algorithm>

namespace beacond {

boost::asio::ip::address Unmapped(const boost::asio::ip::address& address)
{
    return address.is_v6() && address.to_v6().is_v4_mapped()
               ? boost::asio::ip::make_address_v4(boost::asio::ip::v4_mapped, address.to_v6())
               : address;
}

std::string NetworkOf(const boost::asio::ip::address& address)
{
    const boost::asio::ip::address unmapped = Unmapped(address);
    if (unmapped.is_v4()) {
        return unmapped.to_string();
    }
    auto bytes = unmapped.to_v6().to_bytes();
    std::fill(bytes.begin() + 8, bytes.end(), static_cast<unsigned char>(0));
    return boost::asio::ip::address_v6(bytes).to_string() + "/64";
}

// An IPv4 address gets a prefix of the multicast range, which no client can have.
std::uint64_t NetworkNumberOf(const boost::asio::ip::address& address)
{
    constexpr std::uint64_t kIpv4 = 0xFFFF'FFFF'0000'0000U;
    const boost::asio::ip::address unmapped = Unmapped(address);
    if (unmapped.is_v4()) {
        return kIpv4 | unmapped.to_v4().to_uint();
    }
    const auto bytes = unmapped.to_v6().to_bytes();
    std::uint64_t number = 0;
    for (std::size_t index = 0; index < 8; ++index) {
        number = (number << 8) | bytes[index];
    }
    return number;
}

} // namespace beacond
