// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <unistd.h>

#include <cstdlib>

using boost::asio::ip::tcp;

namespace {

/// A TCP socket on the loopback, in the role of the socket of a service manager.
class ManagerSocket final
{
public:
    explicit ManagerSocket(bool listens)
    {
        m_socket.open(tcp::v4());
        m_socket.bind({boost::asio::ip::address_v4::loopback(), 0});
        if (listens) {
            m_socket.listen();
        }
    }

    [[nodiscard]] unsigned short Port() const { return m_socket.local_endpoint().port(); }
    /// Called in the child process.
    void HandOver(const std::string& process, const char* count)
    {
        ::dup2(m_socket.native_handle(), 3);
        ::setenv("LISTEN_PID", process.c_str(), 1);
        ::setenv("LISTEN_FDS", count, 1);
        ::setenv("LISTEN_FDNAMES", "web", 1);
    }

private:
    boost::asio::io_context m_context;
    tcp::acceptor m_socket{m_context};
};

} // namespace

class SocketActivationTest : public ServiceFixture
{
protected:
    void Start(ManagerSocket& socket, bool isForIt, const char* count)
    {
        service.emplace(Path(), serve, "",
                        [&] { socket.HandOver(isForIt ? std::to_string(::getpid()) : "1", count); });
    }
};

TEST_F(SocketActivationTest, listeningSocket_isTheMainListener)
{
    ManagerSocket socket(true);
    Start(socket, true, "1");
    // The connection waits in the socket until the service accepts it.
    EXPECT_EQ(Fetch(socket.Port(), "/healthz"), "ok\n");
    EXPECT_EQ(service->AwaitPort(), socket.Port());
    EXPECT_EQ(Terminate().status, 0);
}

TEST_F(SocketActivationTest, socketThatIsNotHandedOver_isNotUsed)
{
    const struct
    {
        bool isForIt;
        const char* count;
    } rows[] = {{false, "1"}, {true, "0"}};
    for (const auto& row : rows) {
        ManagerSocket socket(true);
        Start(socket, row.isForIt, row.count);
        const unsigned short port = service->AwaitPort();
        EXPECT_NE(port, socket.Port()) << row.count;
        EXPECT_EQ(Fetch(port, "/healthz"), "ok\n") << row.count;
    }
}

TEST_F(SocketActivationTest, unusableHandover_isOneLineAndStatusTwo)
{
    const struct
    {
        bool listens;
        const char* count;
        const char* line;
    } rows[] = {
        {true, "2", "dusk-beacond: the service manager hands over 2 sockets instead of one\n"},
        {false, "1", "dusk-beacond: the service manager hands over no listening TCP socket\n"},
    };
    for (const auto& row : rows) {
        ManagerSocket socket(row.listens);
        Start(socket, true, row.count);
        const ProcessEnd end = service->Wait();
        EXPECT_EQ(end.status, 2);
        EXPECT_EQ(end.errors, row.line);
    }
}
