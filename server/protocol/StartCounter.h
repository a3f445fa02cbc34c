// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace beacond {

/// Counts starts of the program in memory until they are stored. Thread-safe.
class StartCounter final
{
public:
    /// @param count starts to add, under a day, country and distribution as in StartCount
    void Add(std::int32_t day, const std::string& country, const std::string& dist, std::int64_t count = 1);
    /// The starts counted since the last call.
    [[nodiscard]] std::vector<StartCount> Drain();

private:
    std::mutex m_mutex;
    std::map<std::tuple<std::int32_t, std::string, std::string>, std::int64_t> m_counts;
};

} // namespace beacond
