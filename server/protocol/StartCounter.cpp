// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/StartCounter.h"

#include <utility>

namespace beacond {

void StartCounter::Add(std::int32_t day, const std::string& country, const std::string& dist,
                       std::int64_t count)
{
    const std::lock_guard lock(m_mutex);
    m_counts[{day, country, dist}] += count;
}

std::vector<StartCount> StartCounter::Drain()
{
    std::map<std::tuple<std::int32_t, std::string, std::string>, std::int64_t> taken;
    {
        const std::lock_guard lock(m_mutex);
        taken = std::exchange(m_counts, {});
    }
    std::vector<StartCount> counts;
    counts.reserve(taken.size());
    for (const auto& [key, count] : taken) {
        counts.push_back({std::get<0>(key), std::get<1>(key), std::get<2>(key), count});
    }
    return counts;
}

} // namespace beacond
