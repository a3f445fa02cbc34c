// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <functional>
#include <string>

namespace beacond {

struct Settings;

/// The changed keys that a running service can't apply, separated by commas; empty for none.
[[nodiscard]] std::string KeysThatNeedARestart(const Settings& before, const Settings& now);

/// Calls a function after SIGHUP. One call serves all signals that arrive while a call is due or under way.
class Hangups final
{
public:
    /// @param reload is called on the context's thread
    Hangups(boost::asio::io_context& context, std::function<void()> reload);

private:
    void Await();

    boost::asio::signal_set m_signals;
    boost::asio::steady_timer m_delay;
    std::function<void()> m_reload;
    bool m_isDue = false;
};

} // namespace beacond
