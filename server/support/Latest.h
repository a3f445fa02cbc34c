// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>

namespace beacond {

/// An immutable value that is replaced as a whole while others read it. A reader keeps what it got for as
/// long as it holds on to it.
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
        m_value.swap(value); // the older one is destroyed with the argument, after unlocking
    }

private:
    // A mutex: the load of GCC 12's std::atomic<std::shared_ptr> releases its lock without an order, so that
    // the next Set races with it.
    mutable std::mutex m_mutex;
    std::shared_ptr<const Value> m_value;
};

} // namespace beacond
