// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/AttemptLimit.h"

namespace beacond {

bool AttemptLimit::TryConsume(const std::string& name, Time now)
{
    const std::lock_guard lock(m_mutex);
    Forget(now);
    const auto [found, isNew] = m_windows.try_emplace(name, Window{now, 0});
    if (isNew) {
        m_order.emplace_back(now, name);
    }
    if (found->second.count >= m_most) {
        return false;
    }
    ++found->second.count;
    return true;
}

void AttemptLimit::GiveBack(const std::string& name)
{
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_windows.find(name); found != m_windows.end() && found->second.count > 0) {
        --found->second.count;
    }
}

std::size_t AttemptLimit::Names()
{
    const std::lock_guard lock(m_mutex);
    return m_windows.size();
}

void AttemptLimit::Forget(Time now)
{
    while (!m_order.empty() && (now - m_order.front().first >= m_window || m_windows.size() >= kMostNames)) {
        m_windows.erase(m_order.front().second);
        m_order.pop_front();
    }
}

} // namespace beacond
