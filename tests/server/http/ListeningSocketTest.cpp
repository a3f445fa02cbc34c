// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ServerUnderTest.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <system_error>

using beacond::ListeningSocket;
using boost::asio::ip::make_address;
using boost::asio::ip::tcp;

namespace {

// Ends the process with 0 if the socket that it inherits serves, 1 if it has none, 2 if it is refused.
[[noreturn]] void ServeInherited(const std::string& processes, const char* count, bool isListening)
{
    ListeningSocket opened = ListeningSocket::Open({boost::asio::ip::address_v4::loopback(), 0});
    ::dup2(isListening ? opened.Release() : ::socket(AF_INET, SOCK_STREAM, 0), 3);
    ::setenv("LISTEN_PID", processes.c_str(), 1);
    ::setenv("LISTEN_FDS", count, 1);
    try {
        std::optional<ListeningSocket> inherited = ListeningSocket::Inherited();
        if (!inherited) {
            std::_Exit(1);
        }
        beacond::HttpFigures figures;
        const beacond::HttpServer server(std::move(*inherited), {}, AnswerPath, figures);
        RawClient client(server.Port());
        client.Send("GET /a HTTP/1.0\r\n\r\n");
        std::_Exit(client.ReadToEnd().ends_with("/a") && std::getenv("LISTEN_FDS") == nullptr ? 0 : 3);
    } catch (const std::runtime_error&) {
        std::_Exit(2);
    }
}

} // namespace

TEST(ParseListenAddress, addresses_areTakenApart)
{
    EXPECT_EQ(beacond::ParseListenAddress("127.0.0.1:8750"), tcp::endpoint(make_address("127.0.0.1"), 8750));
    EXPECT_EQ(beacond::ParseListenAddress("[::1]:80"), tcp::endpoint(make_address("::1"), 80));
    EXPECT_EQ(beacond::ParseListenAddress("0.0.0.0:0"), tcp::endpoint(make_address("0.0.0.0"), 0));
}

TEST(ParseListenAddress, anythingElse_isNamed)
{
    for (const std::string text :
         {"", "8750", ":8750", "localhost:8750", "127.0.0.1", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:65536",
          "127.0.0.1:80 ", "::1:80", "[::1]", "[127.0.0.1:80"}) {
        try {
            const tcp::endpoint endpoint = beacond::ParseListenAddress(text);
            FAIL() << text << endpoint;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(),
                      "\"" + text + "\" is no address and port, such as 127.0.0.1:8750 or [::1]:8750");
        }
    }
}

TEST(ListeningSocket, addressInUse_isNamed)
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

TEST(ListeningSocket, inherited_isTakenFromTheServiceManager)
{
    const auto own = [] { return std::to_string(::getpid()); };
    EXPECT_EXIT(ServeInherited(own(), "1", true), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(ServeInherited(own(), "0", true), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(ServeInherited("1", "1", true), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(ServeInherited(own(), "2", true), testing::ExitedWithCode(2), "");
    EXPECT_EXIT(ServeInherited(own(), "1", false), testing::ExitedWithCode(2), "");
}
