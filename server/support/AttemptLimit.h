// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/ip/address.hpp>

#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>

namespace beacond {

/// The name under which the limits of one client are counted: an IPv4 address, or the /64 of an IPv6 address,
/// which is what one household gets.
[[nodiscard]] std::string NetworkOf(const boost::asio::ip::address& address);

/// Counts events of many names and tells when one of them has had too many within an hour. Thread-safe; in
/// memory only.
class AttemptLimit final
{
public:
    using Time = std::chrono::sys_seconds;

    /// @param most events of one name within @p window, which begins with its first event
    AttemptLimit(int most, std::chrono::seconds window)
        : m_most(most)
        , m_window(window)
    {
    }

    /// Whether one more event of @p name would be within the limit.
    [[nodiscard]] bool Allows(const std::string& name, Time now);
    void Count(const std::string& name, Time now);

private:
    struct Window
    {
        Time begin;
        int count = 0;
    };

    void DropOld(Time now);

    const int m_most;
    const std::chrono::seconds m_window;
    std::mutex m_mutex;
    std::map<std::string, Window> m_windows;
};

} // namespace beacond
