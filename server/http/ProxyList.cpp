// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ProxyList.h"

#include <boost/asio/ip/address_v6.hpp>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace {

namespace ip = boost::asio::ip;

// Both families in one form; the prefix of an IPv4 network lies behind 96 bits.
ip::address_v6::bytes_type BytesOf(const ip::address& address)
{
    return address.is_v4() ? ip::make_address_v6(ip::v4_mapped, address.to_v4()).to_bytes()
                           : address.to_v6().to_bytes();
}

template <typename Bytes>
bool HaveSamePrefix(const Bytes& left, const Bytes& right, unsigned bits)
{
    const std::size_t whole = bits / 8;
    if (!std::equal(left.begin(), left.begin() + whole, right.begin())) {
        return false;
    }
    const unsigned rest = bits % 8;
    return rest == 0 || ((left[whole] ^ right[whole]) >> (8 - rest)) == 0;
}

std::string_view LastEntry(std::string_view list)
{
    constexpr std::string_view kSpaces = " \t";
    list.remove_prefix(std::min(list.rfind(',') + 1, list.size()));
    const std::size_t first = list.find_first_not_of(kSpaces);
    return first == std::string_view::npos ? std::string_view()
                                           : list.substr(first, list.find_last_not_of(kSpaces) - first + 1);
}

} // namespace

namespace beacond {

ProxyList::ProxyList(const std::vector<std::string>& entries)
{
    for (const std::string& entry : entries) {
        m_networks.push_back(NetworkOf(entry));
    }
}

ProxyList::Network ProxyList::NetworkOf(const std::string& entry)
{
    const std::invalid_argument error("\"" + entry + "\" is neither an IP address nor a network");
    const std::size_t slash = entry.find('/');
    boost::system::error_code failure;
    const ip::address address = Unmapped(ip::make_address(entry.substr(0, slash), failure));
    if (failure) {
        throw error;
    }
    const unsigned longest = address.is_v4() ? 32 : 128;
    unsigned prefix = longest;
    if (slash != std::string::npos) {
        const char* end = entry.data() + entry.size();
        const auto [stop, problem] = std::from_chars(entry.data() + slash + 1, end, prefix);
        if (problem != std::errc() || stop != end || prefix > longest) {
            throw error;
        }
    }
    return {BytesOf(address), prefix + 128 - longest};
}

bool ProxyList::Contains(const ip::address& address) const
{
    const Bytes bytes = BytesOf(address);
    return std::any_of(m_networks.begin(), m_networks.end(), [&bytes](const Network& network) {
        return HaveSamePrefix(network.bytes, bytes, network.prefix);
    });
}

ip::address ProxyList::ClientOf(const ip::address& peer, std::string_view forwardedFor) const
{
    if (forwardedFor.empty() || !Contains(peer)) {
        return peer;
    }
    boost::system::error_code failure;
    const ip::address client = ip::make_address(std::string(LastEntry(forwardedFor)), failure);
    return failure ? peer : Unmapped(client);
}

bool IsLocal(const ip::address& address)
{
    static const ProxyList kLocal({"127.0.0.0/8", "10.0.0.0/8", "172.16.0.0/12", "192.168.0.0/16",
                                   "169.254.0.0/16", "::1", "fc00::/7", "fe80::/10"});
    return kLocal.Contains(address);
}

ip::address Unmapped(const ip::address& address)
{
    return address.is_v6() && address.to_v6().is_v4_mapped()
               ? ip::make_address_v4(ip::v4_mapped, address.to_v6())
               : address;
}

} // namespace beacond
