// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace beacond {

/// An immutable value that is replaced as a whole while others read it. A reader keeps what it got for as
/// long as it holds on to it.
template <typename Value>
class Latest final
{
public:
    /// Null until the first Set.
    [[nodiscard]] std::shared_ptr<const Value> Get() const { return m_value.load(std::memory_order_acquire); }
    void Set(std::shared_ptr<const Value> value)
    {
        m_value.store(std::move(value), std::memory_order_release);
    }

private:
    std::atomic<std::shared_ptr<const Value>> m_value;
};

} // namespace beacond
