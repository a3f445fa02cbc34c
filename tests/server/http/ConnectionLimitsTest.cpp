// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ConnectionLimits.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using beacond::ConnectionLease;
using beacond::ConnectionLimits;
using boost::asio::ip::make_address;

TEST(ConnectionLimits, ofAnAddress_countsNetworksOfIpv6AndSingleAddressesOfIpv4)
{
    struct Row
    {
        const char* first;
        const char* second;
        bool areOne;
    };
    const Row rows[] = {
        {"192.0.2.1", "192.0.2.1", true},
        {"192.0.2.1", "192.0.2.2", false},
        {"2001:db8:0:1::1", "2001:db8:0:1:ffff::", true},
        {"2001:db8:0:1::1", "2001:db8:0:2::1", false},
        {"0.0.0.1", "::1", false},
    };
    for (const Row& row : rows) {
        ConnectionLimits limits(9, 1);
        ConnectionLimits::Refusal refusal{};
        const auto first = limits.Admit(make_address(row.first), false, refusal);
        const auto second = limits.Admit(make_address(row.second), false, refusal);
        EXPECT_TRUE(first.has_value()) << row.first;
        EXPECT_EQ(!second.has_value(), row.areOne) << row.first << " " << row.second;
    }
}

TEST(ConnectionLimits, movedLease_isReturnedOnce)
{
    ConnectionLimits limits(2, 9);
    ConnectionLimits::Refusal refusal{};
    const auto address = make_address("192.0.2.1");
    auto first = limits.Admit(address, false, refusal);
    const auto second = limits.Admit(address, false, refusal);
    {
        const ConnectionLease moved(std::move(*first));
        EXPECT_FALSE(limits.Admit(address, false, refusal));
        EXPECT_EQ(refusal, ConnectionLimits::Refusal::Total);
    }
    first.reset();
    const auto third = limits.Admit(address, false, refusal);
    EXPECT_TRUE(third.has_value());
    EXPECT_FALSE(limits.Admit(address, false, refusal));
}
