// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceFixture.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

using testing::HasSubstr;

namespace {

/// A TCP socket on the loopback, in the role of the socket of a service manager.
class ManagerSocket final
{
public:
    explicit ManagerSocket(bool listens)
        : m_descriptor(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(m_descriptor, generic, size), 0);
        EXPECT_TRUE(!listens || ::listen(m_descriptor, 16) == 0);
        EXPECT_EQ(::getsockname(m_descriptor, generic, &size), 0);
        m_port = ntohs(address.sin_port);
    }
    ~ManagerSocket() { ::close(m_descriptor); }
    ManagerSocket(const ManagerSocket&) = delete;
    ManagerSocket& operator=(const ManagerSocket&) = delete;

    [[nodiscard]] unsigned short Port() const { return m_port; }
    /// Called in the child process.
    void HandOver(const std::string& process, const char* count) const
    {
        ::dup2(m_descriptor, 3);
        ::setenv("LISTEN_PID", process.c_str(), 1);
        ::setenv("LISTEN_FDS", count, 1);
        ::setenv("LISTEN_FDNAMES", "web", 1);
    }

private:
    int m_descriptor = -1;
    unsigned short m_port = 0;
};

} // namespace

class SocketActivationTest : public ServiceFixture
{
protected:
    void Start(const ManagerSocket& socket, bool isForIt, const char* count)
    {
        service.emplace(Path(), serve, "",
                        [&] { socket.HandOver(isForIt ? std::to_string(::getpid()) : "1", count); });
    }
};

TEST_F(SocketActivationTest, listeningSocket_isTheMainListener)
{
    const ManagerSocket socket(true);
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
        const ManagerSocket socket(true);
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
        const ManagerSocket socket(row.listens);
        Start(socket, true, row.count);
        const ProcessEnd end = service->Wait();
        EXPECT_EQ(end.status, 2);
        EXPECT_EQ(end.errors, row.line);
    }
}
