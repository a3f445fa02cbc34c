// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Calls a server on the loopback at a given rate, whether it keeps up or not. Prints the number of answers
// with status 200, the number of other calls, and the latency in milliseconds: median, 99th percentile and
// maximum.
#include "Caller.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
/// The requests of one client, each sent after the answer to the previous one.
using Client = std::vector<std::string>;

// Calls without an answer this long after the last one was due count as failed.
constexpr std::chrono::seconds kPatience{10};

class PacedLoad
{
public:
    PacedLoad(unsigned short port, std::size_t connections, std::vector<Client> clients)
        : m_port(port)
        , m_clients(std::move(clients))
        , m_slots(connections)
    {
    }
    ~PacedLoad() { ::close(m_epoll); }
    PacedLoad(const PacedLoad&) = delete;
    PacedLoad& operator=(const PacedLoad&) = delete;

    /// The clients begin at equal intervals within @p time.
    void Run(std::chrono::duration<double> time)
    {
        const auto begin = Clock::now();
        const auto startOf = [&](std::size_t client) {
            return begin + std::chrono::duration_cast<Clock::duration>(time * static_cast<double>(client) /
                                                                       static_cast<double>(m_clients.size()));
        };
        const Clock::time_point end = startOf(m_clients.size()) + kPatience;
        std::size_t next = 0;
        while (next < m_clients.size() || m_underWay > 0) {
            const Clock::time_point now = Clock::now();
            if (now >= end) {
                return;
            }
            for (; next < m_clients.size() && startOf(next) <= now; ++next) {
                Begin(next, startOf(next));
            }
            AwaitEvents(next < m_clients.size() ? startOf(next) : end);
        }
    }

    void Print()
    {
        std::size_t calls = 0;
        for (const Client& client : m_clients) {
            calls += client.size();
        }
        std::sort(m_milliseconds.begin(), m_milliseconds.end());
        const auto at = [this](double part) {
            const auto index = static_cast<std::size_t>(part * static_cast<double>(m_milliseconds.size()));
            return m_milliseconds.empty() ? 0.0 : m_milliseconds[std::min(index, m_milliseconds.size() - 1)];
        };
        std::printf("%zu %zu %.2f %.2f %.2f\n", m_milliseconds.size(), calls - m_milliseconds.size(), at(0.5),
                    at(0.99), at(1.0));
    }

private:
    struct Waiting
    {
        std::size_t client;
        Clock::time_point since;
    };
    /// A connection and the clients that share it.
    struct Slot
    {
        std::unique_ptr<Caller> caller;
        std::deque<Waiting> waiting;
        std::size_t step = 0; ///< the current request of the first client
    };

    void Begin(std::size_t client, Clock::time_point due)
    {
        Slot& slot = m_slots[client % m_slots.size()];
        slot.waiting.push_back({client, due});
        ++m_underWay;
        if (slot.waiting.size() == 1) {
            Ask(slot);
        }
    }

    // Measure from the time at which the call was due, so that the latency includes the time in the queue
    // behind a late answer.
    void Ask(Slot& slot)
    {
        while (!slot.waiting.empty()) {
            try {
                if (slot.caller == nullptr) {
                    Open(slot);
                }
                if (slot.caller->Send(m_clients[slot.waiting.front().client][slot.step])) {
                    return;
                }
            } catch (const std::runtime_error&) {
                // refused: counted as failed
            }
            EndClient(slot);
            slot.caller.reset();
        }
    }

    void Open(Slot& slot)
    {
        slot.caller = std::make_unique<Caller>(m_port);
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.u64 = static_cast<std::uint64_t>(&slot - m_slots.data());
        ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, slot.caller->Descriptor(), &event);
    }

    void EndClient(Slot& slot)
    {
        slot.waiting.pop_front();
        slot.step = 0;
        --m_underWay;
    }

    void AwaitEvents(Clock::time_point until)
    {
        const auto left = std::max(Clock::duration::zero(), until - Clock::now());
        const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
        const timespec limit{seconds.count(), std::chrono::nanoseconds(left - seconds).count()};
        std::array<epoll_event, 256> events{};
        const int count =
            ::epoll_pwait2(m_epoll, events.data(), static_cast<int>(events.size()), &limit, nullptr);
        for (int index = 0; index < count; ++index) {
            Receive(m_slots[events[static_cast<std::size_t>(index)].data.u64]);
        }
    }

    void Receive(Slot& slot)
    {
        const Caller::Progress progress = slot.caller->Receive();
        if (progress == Caller::Progress::Waiting) {
            return;
        }
        if (progress == Caller::Progress::Closed) {
            slot.caller.reset();
            if (slot.waiting.empty()) {
                return;
            }
            EndClient(slot);
        } else {
            CountAnswer(slot);
        }
        Ask(slot);
    }

    void CountAnswer(Slot& slot)
    {
        Waiting& first = slot.waiting.front();
        const Clock::time_point now = Clock::now();
        if (slot.caller->IsFine()) {
            m_milliseconds.push_back(std::chrono::duration<double, std::milli>(now - first.since).count());
        }
        first.since = now;
        if (++slot.step == m_clients[first.client].size()) {
            EndClient(slot);
        }
    }

    const unsigned short m_port;
    const std::vector<Client> m_clients;
    std::vector<Slot> m_slots;
    std::size_t m_underWay = 0;
    int m_epoll = ::epoll_create1(0);
    std::vector<double> m_milliseconds;
};

// One line for each client: its targets, separated by tabs.
std::vector<Client> ReadClients(const char* path)
{
    std::vector<Client> clients;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream targets(line);
        Client& client = clients.emplace_back();
        for (std::string target; std::getline(targets, target, '\t');) {
            client.push_back(RequestFor(target, false));
        }
    }
    return clients;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s PORT CONNECTIONS SECONDS FILE_OF_CLIENTS\n", argv[0]);
        return 2;
    }
    PacedLoad load(static_cast<unsigned short>(std::strtoul(argv[1], nullptr, 10)),
                   std::strtoul(argv[2], nullptr, 10), ReadClients(argv[4]));
    load.Run(std::chrono::duration<double>(std::strtod(argv[3], nullptr)));
    load.Print();
}
