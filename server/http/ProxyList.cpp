// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ProxyList.h"

#include "support/Ascii.h"
#include "support/Network.h"

#include <boost/asio/ip/address_v6.hpp>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace {

namespace ip = boost::asio::ip;

// Addresses of both families as IPv6; the prefix of an IPv4 network starts after 96 bits.
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

// Removes and returns the last entry of the list.
std::string_view TakeLastEntry(std::string_view& list)
{
    constexpr std::string_view kSpaces = " \t";
    const std::size_t comma = list.rfind(',');
    std::string_view entry = list.substr(comma == std::string_view::npos ? 0 : comma + 1);
    list = list.substr(0, comma == std::string_view::npos ? 0 : comma);
    entry.remove_prefix(std::min(entry.find_first_not_of(kSpaces), entry.size()));
    return entry.substr(0, entry.find_last_not_of(kSpaces) + 1);
}

// "192.0.2.7", "192.0.2.7:51234", "2001:db8::1", "[2001:db8::1]", "[2001:db8::1]:443"
std::optional<ip::address> AddressOf(std::string_view entry)
{
    if (entry.starts_with('[')) {
        const std::size_t end = entry.find(']');
        entry = end == std::string_view::npos ? std::string_view() : entry.substr(1, end - 1);
    } else if (std::count(entry.begin(), entry.end(), ':') == 1) {
        entry = entry.substr(0, entry.find(':'));
    }
    boost::system::error_code failure;
    const ip::address address = ip::make_address(std::string(entry), failure);
    return failure ? std::nullopt : std::optional(beacond::Unmapped(address));
}

} // namespace

namespace beacond {

ProxyList::ProxyList(const std::vector<std::string>& entries)
{
    for (const std::string& entry : entries) {
        m_networks.push_back(ParseNetwork(entry));
    }
}

ProxyList::Network ProxyList::ParseNetwork(const std::string& entry)
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

std::optional<ip::address> ProxyList::ClientIn(std::string_view forwardedFor) const
{
    std::optional<ip::address> client;
    do {
        client = AddressOf(TakeLastEntry(forwardedFor));
    } while (client && Contains(*client) && !forwardedFor.empty());
    return client;
}

bool IsLocal(const ip::address& address)
{
    static const ProxyList kLocal({"127.0.0.0/8", "10.0.0.0/8", "172.16.0.0/12", "192.168.0.0/16",
                                   "169.254.0.0/16", "::1", "fc00::/7", "fe80::/10"});
    return kLocal.Contains(address);
}

} // namespace beacond
