// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Takes messages by SMTP or HTTP on the loopback, and keeps none. Prints its port; at the end of its standard
// input the number of messages.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

namespace {

std::atomic<long> messages = 0;

class Client
{
public:
    explicit Client(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Client() { ::close(m_descriptor); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// Empty at the end of the connection.
    std::string ReadThrough(std::string_view mark)
    {
        std::size_t found = 0;
        while ((found = m_received.find(mark)) == std::string::npos) {
            if (!Receive()) {
                return {};
            }
        }
        std::string text = m_received.substr(0, found + mark.size());
        m_received.erase(0, text.size());
        return text;
    }
    void Skip(std::size_t count)
    {
        while (m_received.size() < count && Receive()) {
        }
        m_received.erase(0, count);
    }
    void Write(std::string_view text) const
    {
        (void)!::send(m_descriptor, text.data(), text.size(), MSG_NOSIGNAL);
    }

private:
    bool Receive()
    {
        std::array<char, 8192> bytes{};
        const ssize_t count = ::recv(m_descriptor, bytes.data(), bytes.size(), 0);
        m_received.append(bytes.data(), static_cast<std::size_t>(count > 0 ? count : 0));
        return count > 0;
    }

    int m_descriptor;
    std::string m_received;
};

void TakeMails(Client& client)
{
    client.Write("220 sink\r\n");
    for (std::string line = client.ReadThrough("\r\n"); !line.empty(); line = client.ReadThrough("\r\n")) {
        if (line == "DATA\r\n") {
            client.Write("354 go on\r\n");
            if (client.ReadThrough("\r\n.\r\n").empty()) {
                return;
            }
            ++messages;
        }
        client.Write("250 ok\r\n");
    }
}

void TakeRequests(Client& client)
{
    constexpr std::string_view kLength = "Content-Length: ";
    for (;;) {
        const std::string header = client.ReadThrough("\r\n\r\n");
        if (header.empty()) {
            return;
        }
        const std::size_t length = header.find(kLength);
        if (length != std::string::npos) {
            client.Skip(std::strtoul(header.c_str() + length + kLength.size(), nullptr, 10));
        }
        ++messages;
        client.Write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    }
}

void Accept(int listener, bool isMail)
{
    for (;;) {
        const int descriptor = ::accept(listener, nullptr, nullptr);
        const int on = 1;
        ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        std::thread([descriptor, isMail] {
            Client client(descriptor);
            isMail ? TakeMails(client) : TakeRequests(client);
        }).detach();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const std::string_view protocol = argc == 2 ? argv[1] : "";
    if (protocol != "smtp" && protocol != "http") {
        std::fprintf(stderr, "usage: %s smtp|http\n", argv[0]);
        return 2;
    }
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(listener, 128) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        return 1;
    }
    std::printf("%d\n", ntohs(address.sin_port));
    std::fflush(stdout);
    std::thread(&Accept, listener, protocol == "smtp").detach();
    while (std::getchar() != EOF) {
    }
    std::printf("%ld\n", messages.load());
    std::fflush(stdout);
    std::_Exit(0);
}
