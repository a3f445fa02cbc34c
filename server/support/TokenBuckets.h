// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace beacond {

/// A token bucket for each of many clients: a steady rate of requests, and a burst after a rest. Thread-safe;
/// few clients share a lock. In memory only, of a fixed size: a new client replaces the client of the same
/// hash set whose bucket is the fullest. So a flood of clients displaces those with few requests, which loses
/// nothing, before those that have used up their tokens.
class TokenBuckets final
{
public:
    using Clock = std::chrono::steady_clock;

    /// Clients that are remembered at once.
    static constexpr std::size_t kMostClients = 131'072;

    /// @param perMinute tokens added to a bucket each minute; 0 for no limit
    /// @param burst tokens of a full bucket, at least 1
    TokenBuckets(std::int64_t perMinute, std::int64_t burst);

    /// Takes a token of @p client. Returns zero, or, if its bucket is empty, the time until the next token.
    [[nodiscard]] Clock::duration TryConsume(std::uint64_t client, Clock::time_point now);

private:
    struct Bucket
    {
        std::uint64_t client = 0;
        Clock::time_point full; ///< when the bucket will be full again; gives the number of its tokens
    };
    /// Clients of one hash.
    using Set = std::array<Bucket, 8>;
    struct alignas(64) Lock // a cache line of its own
    {
        std::mutex mutex;
    };

    const Clock::duration m_interval; ///< from one token to the next
    const Clock::duration m_depth;    ///< from an empty bucket to a full one
    std::vector<Set> m_sets;
    std::array<Lock, 64> m_locks;
};

} // namespace beacond
