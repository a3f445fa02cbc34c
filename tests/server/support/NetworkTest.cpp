// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Network.h"

#include <gtest/gtest.h>

using beacond::NetworkOf;

TEST(NetworkOf, addresses_countByHousehold)
{
    const auto networkOf = [](const char* text) { return NetworkOf(boost::asio::ip::make_address(text)); };
    EXPECT_EQ(networkOf("192.0.2.7"), "192.0.2.7");
    EXPECT_EQ(networkOf("::ffff:192.0.2.7"), "192.0.2.7");
    EXPECT_EQ(networkOf("2001:db8:1:2:3:4:5:6"), "2001:db8:1:2::/64");
    EXPECT_EQ(networkOf("2001:db8:1:2::9"), "2001:db8:1:2::/64");
}
