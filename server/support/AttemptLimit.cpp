// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/AttemptLimit.h"

#include <algorithm>

namespace beacond {

namespace {

// A sender of many addresses must not fill the memory; beyond that the oldest windows make room.
constexpr std::size_t kMostWindows = 100'000;

} // namespace

std::string NetworkOf(const boost::asio::ip::address& address)
{
    if (address.is_v4()) {
        return address.to_string();
    }
    auto bytes = address.to_v6().to_bytes();
    if (address.to_v6().is_v4_mapped()) {
        return boost::asio::ip::make_address_v4(boost::asio::ip::v4_mapped, address.to_v6()).to_string();
    }
    std::fill(bytes.begin() + 8, bytes.end(), static_cast<unsigned char>(0));
    return boost::asio::ip::address_v6(bytes).to_string() + "/64";
}

bool AttemptLimit::Allows(const std::string& name, Time now)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_windows.find(name);
    return found == m_windows.end() || now - found->second.begin >= m_window || found->second.count < m_most;
}

void AttemptLimit::Count(const std::string& name, Time now)
{
    const std::lock_guard lock(m_mutex);
    DropOld(now);
    Window& window = m_windows[name];
    if (window.count == 0 || now - window.begin >= m_window) {
        window = {now, 0};
    }
    ++window.count;
}

void AttemptLimit::DropOld(Time now)
{
    if (m_windows.size() < kMostWindows) {
        return;
    }
    std::erase_if(m_windows, [this, now](const auto& entry) { return now - entry.second.begin >= m_window; });
    if (m_windows.size() >= kMostWindows) {
        m_windows.clear();
    }
}

} // namespace beacond
