// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>

namespace beacond {

/// An immutable value that is replaced as a whole while other threads read it. A reader keeps its version as
/// long as it holds the pointer.
template <typename Value>
class Latest final
{
public:
    /// Null until the first Set.
    [[nodiscard]] std::shared_ptr<const Value> Get() const
    {
        const std::lock_guard lock(m_mutex);
        return m_value;
    }
    void Set(std::shared_ptr<const Value> value)
    {
        const std::lock_guard lock(m_mutex);
        m_value.swap(value); // the previous value is destroyed with the argument, after unlocking
    }

private:
    // A mutex: in GCC 12 std::atomic<std::shared_ptr>::load() releases its internal lock with relaxed order,
    // which is a data race with the next Set.
    mutable std::mutex m_mutex;
    std::shared_ptr<const Value> m_value;
};

} // namespace beacond
