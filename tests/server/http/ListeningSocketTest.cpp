// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ListeningSocket.h"

#include "server/ErrorOf.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

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
        EXPECT_EQ(ErrorOf<std::invalid_argument>([&] { return beacond::ParseListenAddress(text); }),
                  "\"" + text + "\" is not an address and port, such as 127.0.0.1:8750 or [::1]:8750");
    }
}
