// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Reloading.h"

#include "app/Settings.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iterator>
#include <string_view>
#include <utility>

namespace beacond {

namespace {

constexpr std::chrono::milliseconds kDelay{50};
// A change of any other key needs a restart. Only the command check reads http.base_url.
constexpr std::string_view kReloadableKeys[] = {"http.base_url", "log.level", "messages.signup_address",
                                                "places.file", "service.dists"};

} // namespace

std::string KeysThatNeedARestart(const Settings& before, const Settings& now)
{
    std::string keys;
    for (const std::string& key : ChangedKeys(before, now)) {
        if (std::find(std::begin(kReloadableKeys), std::end(kReloadableKeys), key) ==
            std::end(kReloadableKeys)) {
            keys += (keys.empty() ? "" : ", ") + key;
        }
    }
    return keys;
}

Hangups::Hangups(boost::asio::io_context& context, std::function<void()> reload)
    : m_signals(context, SIGHUP)
    , m_delay(context)
    , m_reload(std::move(reload))
{
    Await();
}

void Hangups::Await()
{
    m_signals.async_wait([this](const boost::system::error_code& failure, int) {
        if (failure) {
            return;
        }
        if (!std::exchange(m_isDue, true)) {
            m_delay.expires_after(kDelay);
            m_delay.async_wait([this](const boost::system::error_code&) {
                m_isDue = false;
                m_reload();
            });
        }
        Await();
    });
}

} // namespace beacond
