// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TokenBuckets.h"

#include <algorithm>

namespace beacond {

namespace {

using Duration = TokenBuckets::Clock::duration;

Duration IntervalOf(std::int64_t perMinute)
{
    return perMinute > 0 ? Duration(std::chrono::minutes(1)) / perMinute : Duration::zero();
}

// Fibonacci hashing: the high bits of the product depend on all bits of the number.
std::size_t HashOf(std::uint64_t client)
{
    return static_cast<std::size_t>((client * 0x9E37'79B9'7F4A'7C15U) >> 32);
}

} // namespace

TokenBuckets::TokenBuckets(std::int64_t perMinute, std::int64_t burst)
    : m_interval(IntervalOf(perMinute))
    , m_depth(m_interval * burst)
    , m_sets(perMinute > 0 ? kMostClients / Set().size() : 0)
{
}

Duration TokenBuckets::TryConsume(std::uint64_t client, Clock::time_point now)
{
    if (m_sets.empty()) {
        return Duration::zero();
    }
    const std::size_t index = HashOf(client) % m_sets.size();
    const std::lock_guard lock(m_locks[index % m_locks.size()].mutex);
    Set& set = m_sets[index];
    auto* bucket =
        std::find_if(set.begin(), set.end(), [client](const Bucket& each) { return each.client == client; });
    if (bucket == set.end()) {
        bucket = std::min_element(set.begin(), set.end(),
                                  [](const Bucket& a, const Bucket& b) { return a.full < b.full; });
        *bucket = {client, now};
    }
    const Clock::time_point full = std::max(bucket->full, now) + m_interval;
    if (const Duration wait = full - now - m_depth; wait > Duration::zero()) {
        return wait;
    }
    bucket->full = full;
    return Duration::zero();
}

} // namespace beacond
