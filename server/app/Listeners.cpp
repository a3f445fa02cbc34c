// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Listeners.h"

#include "app/Log.h"

#include <sys/resource.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace beacond {

namespace {

// Enough for a few collectors and an operator.
constexpr std::size_t kMetricsConnections = 16;

// Each connection uses a file descriptor. The reserved descriptors are for the metrics, files, the store and
// the libraries.
std::size_t ConnectionsThatFit(std::size_t wanted)
{
    constexpr rlim_t kReserve = 64 + kMetricsConnections;
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return wanted;
    }
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    ::getrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_cur == RLIM_INFINITY || limit.rlim_cur >= wanted + kReserve) {
        return wanted;
    }
    const auto most = static_cast<std::size_t>(limit.rlim_cur > kReserve ? limit.rlim_cur - kReserve : 1);
    LogWarning("the limit of open files leaves room for " + std::to_string(most) + " connections");
    return most;
}

} // namespace

ListeningSocket Listen(const std::string& key, const ListenAddress& address)
{
    try {
        return ListeningSocket::Open(address);
    } catch (const std::exception& error) {
        throw ListenError(key + ": " + error.what());
    }
}

ListeningSocket MainListener(const Settings& settings)
{
    try {
        if (std::optional<ListeningSocket> inherited = ListeningSocket::Inherited()) {
            return std::move(*inherited);
        }
    } catch (const std::runtime_error& error) {
        throw ListenError(error.what());
    }
    return Listen("http.listen", settings.http.listen);
}

HttpOptions MainHttpOptions(const Settings& settings)
{
    HttpOptions options;
    options.threads = static_cast<unsigned>(settings.http.threads);
    options.maxConnections = ConnectionsThatFit(static_cast<std::size_t>(settings.http.connections));
    options.maxConnectionsPerAddress = static_cast<std::size_t>(settings.http.connectionsPerAddress);
    options.proxies = ProxyList(settings.http.proxies);
    options.reportError = &LogError;
    options.reportWarning = &LogWarning;
    return options;
}

HttpOptions MetricsHttpOptions()
{
    HttpOptions options;
    options.threads = 1;
    options.maxConnections = kMetricsConnections;
    options.idleTime = std::chrono::seconds(5);
    options.reportError = &LogError;
    return options;
}

} // namespace beacond
