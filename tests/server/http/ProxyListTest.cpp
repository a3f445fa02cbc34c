// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ProxyList.h"

#include <gtest/gtest.h>

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

TEST(ProxyList, badEntry_isNamed)
{
    for (const std::string entry :
         {"", "localhost", "10.0.0.0/33", "10.0.0.0/", "10.0.0.0/a", "10.0.0.0/8 ", "::1/129"}) {
        try {
            const ProxyList list({entry});
            FAIL() << entry;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(), "\"" + entry + "\" is neither an IP address nor a network");
        }
    }
}

TEST(ProxyList, forwardedAddress_countsFromAProxyOnly)
{
    struct Row
    {
        const char* name;
        const char* peer;
        const char* forwardedFor;
        const char* client;
    };
    const Row rows[] = {
        {"one address", "10.0.0.1", "203.0.113.9", "203.0.113.9"},
        {"the last one", "10.0.0.1", "198.51.100.7, 203.0.113.9", "203.0.113.9"},
        {"spaces", "10.0.0.1", "198.51.100.7,\t203.0.113.9 ", "203.0.113.9"},
        {"IPv6", "10.0.0.1", "2001:db8::1", "2001:db8::1"},
        {"IPv4 in IPv6", "10.0.0.1", "::ffff:203.0.113.9", "203.0.113.9"},
        {"from elsewhere", "192.0.2.1", "203.0.113.9", "192.0.2.1"},
        {"nothing", "10.0.0.1", "", "10.0.0.1"},
        {"no address", "10.0.0.1", "203.0.113.9, unknown", "10.0.0.1"},
        {"empty last entry", "10.0.0.1", "203.0.113.9, ", "10.0.0.1"},
    };
    const ProxyList list({"10.0.0.0/8"});
    for (const Row& row : rows) {
        EXPECT_EQ(list.ClientOf(make_address(row.peer), row.forwardedFor), make_address(row.client))
            << row.name;
    }
}

TEST(IsLocal, addressesWhereAProxyMayStand_areTold)
{
    for (const char* inside : {"127.0.0.1", "10.1.2.3", "172.16.0.1", "172.31.255.255", "192.168.7.7",
                               "169.254.1.1", "::1", "fd00::1", "fe80::1"}) {
        EXPECT_TRUE(beacond::IsLocal(make_address(inside))) << inside;
    }
    for (const char* outside : {"126.255.255.255", "172.32.0.1", "192.0.2.1", "2001:db8::1", "::2"}) {
        EXPECT_FALSE(beacond::IsLocal(make_address(outside))) << outside;
    }
}
