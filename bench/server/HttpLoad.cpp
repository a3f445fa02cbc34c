// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Calls a server on the loopback over many connections, each of which sends the next request after an answer.
// Prints the processor time of the server for each call, in microseconds.
#include "Caller.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>
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
    Load(unsigned short port, bool isKept, std::vector<std::string> requests, std::size_t calls)
        : m_port(port)
        , m_isKept(isKept)
        , m_requests(std::move(requests))
        , m_left(calls)
    {
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
        while (!m_callers.empty()) {
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
        auto caller = std::make_unique<Caller>(m_port);
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = caller->Descriptor();
        ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, caller->Descriptor(), &event);
        Ask(*caller);
        m_callers[event.data.fd] = std::move(caller);
    }

    void Ask(Caller& caller)
    {
        --m_left;
        if (!caller.Send(m_requests[m_left % m_requests.size()])) {
            throw std::runtime_error("the connection was closed");
        }
    }

    void Receive(int descriptor)
    {
        Caller& caller = *m_callers.at(descriptor);
        const Caller::Progress progress = caller.Receive();
        if (progress == Caller::Progress::Waiting) {
            return;
        }
        if (!caller.IsFine()) {
            throw std::runtime_error("another answer than 200");
        }
        if (m_isKept && progress == Caller::Progress::Answered && m_left > 0) {
            Ask(caller);
        } else if (m_isKept || progress == Caller::Progress::Closed) {
            m_callers.erase(descriptor);
            if (m_left > 0) {
                Open();
            }
        }
    }

    const unsigned short m_port;
    const bool m_isKept;
    const std::vector<std::string> m_requests;
    std::size_t m_left;
    int m_epoll = ::epoll_create1(0);
    std::unordered_map<int, std::unique_ptr<Caller>> m_callers;
};

std::vector<std::string> RequestsFor(const char* targets, bool isKept)
{
    std::vector<std::string> requests;
    std::ifstream file(targets);
    for (std::string target; std::getline(file, target);) {
        requests.push_back(RequestFor(target, !isKept));
    }
    if (requests.empty()) {
        throw std::runtime_error(std::string(targets) + " names no target");
    }
    return requests;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 7) {
        std::fprintf(stderr, "usage: %s kept|new PORT CONNECTIONS CALLS FILE_OF_TARGETS PROCESS...\n",
                     argv[0]);
        return 2;
    }
    const std::vector<std::string> processes(argv + 6, argv + argc);
    const bool isKept = std::string_view(argv[1]) == "kept";
    const std::size_t calls = std::strtoul(argv[4], nullptr, 10);
    try {
        Load load(static_cast<unsigned short>(std::strtoul(argv[2], nullptr, 10)), isKept,
                  RequestsFor(argv[5], isKept), calls);
        const double before = ProcessorSeconds(processes);
        load.Run(std::strtoul(argv[3], nullptr, 10));
        std::printf("%.2f\n", (ProcessorSeconds(processes) - before) * 1e6 / static_cast<double>(calls));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
