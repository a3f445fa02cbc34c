// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace beacond {

/// Counters of a server since its start. Any thread may read them.
struct HttpFigures
{
    using Count = std::atomic<std::uint64_t>;

    Count connectionsOpen{0}; ///< current number
    Count connectionsAccepted{0};
    Count refusedByTotal{0};   ///< connections beyond the limit of all
    Count refusedByAddress{0}; ///< connections beyond the limit of one address
    Count acceptErrors{0};     ///< mostly for want of a descriptor

    std::array<Count, 6> replies{}; ///< by the first digit of the status
    Count requestsRefused{0};       ///< malformed or too large; answered without the handler
    Count handlerFailures{0};       ///< exceptions of the handler
    Count workerFailures{0};        ///< exceptions outside the handler; the thread goes on
    Count unlistedProxies{0};       ///< requests forwarded by a local address that is not a configured proxy
    Count unreadableForwards{0};    ///< requests of a configured proxy that name no client

    Count headerTimeouts{0};
    Count bodyTimeouts{0};
    Count idleTimeouts{0};
    Count writeTimeouts{0};
};

inline void Increment(HttpFigures::Count& count)
{
    count.fetch_add(1, std::memory_order_relaxed);
}

inline void Decrement(HttpFigures::Count& count)
{
    count.fetch_sub(1, std::memory_order_relaxed);
}

} // namespace beacond
