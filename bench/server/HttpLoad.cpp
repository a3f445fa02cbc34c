// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Calls a server at the loopback over many connections and prints the processor time that each call cost the
// server.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

// User and kernel time of all threads of the processes.
double ProcessorSeconds(const std::vector<std::string>& processes)
{
    double nanoseconds = 0;
    for (const std::string& process : processes) {
        for (const auto& task : std::filesystem::directory_iterator("/proc/" + process + "/task")) {
            double used = 0;
            std::ifstream(task.path() / "schedstat") >> used;
            nanoseconds += used;
        }
    }
    return nanoseconds / 1e9;
}

class Load
{
public:
    Load(unsigned short port, bool isKept, std::size_t calls)
        : m_isKept(isKept)
        , m_left(calls)
    {
        m_address.sin_family = AF_INET;
        m_address.sin_port = htons(port);
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_request = "GET /ok HTTP/1.1\r\nHost: localhost\r\nUser-Agent: DuskBeacon/1.0.5\r\nAccept-Encoding: "
                    "gzip\r\n";
        m_request += m_isKept ? "\r\n" : "Connection: close\r\n\r\n";
    }
    ~Load() { ::close(m_epoll); }
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

    void Run(std::size_t connections)
    {
        for (std::size_t count = 0; count < connections && m_left > 0; ++count) {
            Open();
        }
        std::array<epoll_event, 256> events{};
        while (m_open > 0) {
            const int count = ::epoll_wait(m_epoll, events.data(), static_cast<int>(events.size()), 10'000);
            if (count <= 0) {
                throw std::runtime_error("the server does not answer");
            }
            for (int index = 0; index < count; ++index) {
                Receive(events[static_cast<std::size_t>(index)].data.fd);
            }
        }
    }

private:
    void Open()
    {
        const int descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
        if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&m_address), sizeof(m_address)) != 0) {
            throw std::runtime_error("no connection");
        }
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = descriptor;
        ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, descriptor, &event);
        ++m_open;
        Ask(descriptor);
    }

    void Ask(int descriptor)
    {
        --m_left;
        if (::send(descriptor, m_request.data(), m_request.size(), MSG_NOSIGNAL) < 0) {
            throw std::runtime_error("the connection was closed");
        }
    }

    // The answer is so short that it comes in one piece.
    void Receive(int descriptor)
    {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::recv(descriptor, bytes.data(), bytes.size(), 0);
        const bool isEnd = count <= 0;
        if (!isEnd && std::string_view(bytes.data(), static_cast<std::size_t>(count)).substr(9, 3) != "200") {
            throw std::runtime_error("another answer than 200");
        }
        if (m_isKept && !isEnd && m_left > 0) {
            Ask(descriptor);
        } else if (isEnd || m_isKept) {
            ::close(descriptor);
            --m_open;
            if (m_left > 0) {
                Open();
            }
        }
    }

    const bool m_isKept;
    std::size_t m_left;
    std::size_t m_open = 0;
    int m_epoll = ::epoll_create1(0);
    sockaddr_in m_address{};
    std::string m_request;
};

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 6) {
        std::fprintf(stderr, "usage: %s kept|new PORT CONNECTIONS CALLS PROCESS...\n", argv[0]);
        return 2;
    }
    const std::vector<std::string> processes(argv + 5, argv + argc);
    const std::size_t calls = std::strtoul(argv[4], nullptr, 10);
    try {
        Load load(static_cast<unsigned short>(std::strtoul(argv[2], nullptr, 10)),
                  std::string_view(argv[1]) == "kept", calls);
        const double before = ProcessorSeconds(processes);
        load.Run(std::strtoul(argv[3], nullptr, 10));
        std::printf("%.2f\n", (ProcessorSeconds(processes) - before) * 1e6 / static_cast<double>(calls));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
