// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ListeningSocket.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <system_error>

using beacond::ListeningSocket;
using boost::asio::ip::make_address;
using boost::asio::ip::tcp;

TEST(ParseListenAddress, addresses_areParsed)
{
    EXPECT_EQ(beacond::ParseListenAddress("127.0.0.1:8750"), tcp::endpoint(make_address("127.0.0.1"), 8750));
    EXPECT_EQ(beacond::ParseListenAddress("[::1]:80"), tcp::endpoint(make_address("::1"), 80));
    EXPECT_EQ(beacond::ParseListenAddress("0.0.0.0:0"), tcp::endpoint(make_address("0.0.0.0"), 0));
}

TEST(ParseListenAddress, otherText_isRefusedByName)
{
    for (const std::string text :
         {"", "8750", ":8750", "localhost:8750", "127.0.0.1", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:65536",
          "127.0.0.1:80 ", "::1:80", "[::1]", "[127.0.0.1:80"}) {
        try {
            const tcp::endpoint endpoint = beacond::ParseListenAddress(text);
            FAIL() << text << endpoint;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(),
                      "\"" + text + "\" is not an address and port, such as 127.0.0.1:8750 or [::1]:8750");
        }
    }
}

TEST(ListeningSocket, addressInUse_throwsTheAddress)
{
    const ListeningSocket first = ListeningSocket::Open({boost::asio::ip::address_v4::loopback(), 0});
    const std::string address = "127.0.0.1:" + std::to_string(first.Endpoint().port());
    try {
        const ListeningSocket second = ListeningSocket::Open(first.Endpoint());
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.what(), "can't listen at " + address + ": Address already in use");
    }
}
