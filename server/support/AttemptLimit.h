// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace beacond {

/// Limits the attempts per name within a time window. Thread-safe; in memory only.
class AttemptLimit final
{
public:
    /// Of a steady clock: if the clock were set back, old attempts would not expire.
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    /// The number of names that are remembered. Beyond it the oldest is forgotten, so that a sender with many
    /// addresses can't fill the memory.
    static constexpr std::size_t kMostNames = 100'000;

    /// @param most attempts of one name within @p window, which begins with its first one
    AttemptLimit(int most, std::chrono::seconds window)
        : m_most(most)
        , m_window(window)
    {
    }

    /// Counts an attempt of @p name. Returns false, without counting, if none is left.
    [[nodiscard]] bool TryConsume(const std::string& name, Time now);
    /// Undoes a TryConsume.
    void GiveBack(const std::string& name);

    [[nodiscard]] std::size_t Names();

private:
    struct Window
    {
        Time begin;
        int count = 0;
    };

    void Forget(Time now);

    const int m_most;
    const std::chrono::seconds m_window;
    std::mutex m_mutex;
    std::map<std::string, Window> m_windows;
    /// The names in the order in which their windows began.
    std::deque<std::pair<Time, std::string>> m_order;
};

} // namespace beacond
