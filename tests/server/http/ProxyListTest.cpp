// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ProxyList.h"

#include "server/ErrorOf.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

using beacond::ProxyList;
using boost::asio::ip::make_address;

TEST(ProxyList, addressesAndNetworks_containTheirOwn)
{
    const ProxyList list({"192.0.2.1", "10.0.0.0/8", "172.16.0.0/12", "2001:db8::/33", "::1"});
    for (const char* inside : {"192.0.2.1", "10.255.0.3", "172.31.255.255", "2001:db8:7fff::1", "::1"}) {
        EXPECT_TRUE(list.Contains(make_address(inside))) << inside;
    }
    for (const char* outside :
         {"192.0.2.2", "11.0.0.0", "172.32.0.0", "2001:db8:8000::1", "::2", "::a00:1"}) {
        EXPECT_FALSE(list.Contains(make_address(outside))) << outside;
    }
    EXPECT_FALSE(ProxyList().Contains(make_address("127.0.0.1")));
    EXPECT_TRUE(ProxyList({"0.0.0.0/0"}).Contains(make_address("203.0.113.9")));
    EXPECT_FALSE(ProxyList({"0.0.0.0/0"}).Contains(make_address("2001:db8::1")));
}

TEST(ProxyList, invalidEntry_isRefusedByName)
{
    for (const std::string entry :
         {"", "localhost", "10.0.0.0/33", "10.0.0.0/", "10.0.0.0/a", "10.0.0.0/8 ", "::1/129"}) {
        EXPECT_EQ(ErrorOf<std::invalid_argument>([&] { return ProxyList({entry}); }),
                  "\"" + entry + "\" is neither an IP address nor a network");
    }
}

TEST(ProxyList, forwardedAddresses_nameTheClient)
{
    struct Row
    {
        const char* name;
        const char* forwardedFor;
        std::optional<const char*> client;
    };
    const Row rows[] = {
        {"one address", "203.0.113.9", "203.0.113.9"},
        {"the last one", "198.51.100.7, 203.0.113.9", "203.0.113.9"},
        {"spaces", "198.51.100.7,\t203.0.113.9 ", "203.0.113.9"},
        {"IPv6", "2001:db8::1", "2001:db8::1"},
        {"IPv4 in IPv6", "::ffff:203.0.113.9", "203.0.113.9"},
        {"port", "198.51.100.7, 203.0.113.9:51234", "203.0.113.9"},
        {"IPv6 and port", "[2001:db8::1]:443", "2001:db8::1"},
        {"IPv6 in brackets", "[2001:db8::1]", "2001:db8::1"},
        {"proxies behind it", "198.51.100.7, 203.0.113.9, 10.0.0.2:80,10.0.0.3", "203.0.113.9"},
        {"proxies only", "10.0.0.2, 10.0.0.3", "10.0.0.2"},
        {"nothing", "", std::nullopt},
        {"no address", "203.0.113.9, unknown", std::nullopt},
        {"no address before a proxy", "203.0.113.9, unknown, 10.0.0.3", std::nullopt},
        {"empty last entry", "203.0.113.9, ", std::nullopt},
        {"open bracket", "[2001:db8::1", std::nullopt},
        {"bracket", "[", std::nullopt},
    };
    const ProxyList list({"10.0.0.0/8"});
    for (const Row& row : rows) {
        const auto expected = row.client ? std::optional(make_address(*row.client)) : std::nullopt;
        EXPECT_EQ(list.ClientIn(row.forwardedFor), expected) << row.name;
    }
}

TEST(IsLocal, loopbackAndPrivateAddresses_areLocal)
{
    for (const char* inside : {"127.0.0.1", "10.1.2.3", "172.16.0.1", "172.31.255.255", "192.168.7.7",
                               "169.254.1.1", "::1", "fd00::1", "fe80::1"}) {
        EXPECT_TRUE(beacond::IsLocal(make_address(inside))) << inside;
    }
    for (const char* outside : {"126.255.255.255", "172.32.0.1", "192.0.2.1", "2001:db8::1", "::2"}) {
        EXPECT_FALSE(beacond::IsLocal(make_address(outside))) << outside;
    }
}
