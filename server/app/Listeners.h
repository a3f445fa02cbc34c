// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"
#include "http/HttpOptions.h"
#include "http/ListeningSocket.h"

#include <stdexcept>
#include <string>

namespace beacond {

/// Failure to listen; the text names the address and the reason.
class ListenError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Throws ListenError.
/// @param key the one of the configuration that names the address
[[nodiscard]] ListeningSocket Listen(const std::string& key, const ListenAddress& address);

/// The socket that the service manager hands over, otherwise one at the configured address. Call it before
/// other threads run. Throws ListenError, also for a socket that can't be used.
[[nodiscard]] ListeningSocket MainListener(const Settings& settings);

/// The limits of the main listener. Raises the process's limit of open files as far as it may, and lowers the
/// number of connections, with a warning, to what fits into it.
[[nodiscard]] HttpOptions MainHttpOptions(const Settings& settings);
/// The limits of the metrics' listener: 16 connections, each closed after five seconds without a request.
[[nodiscard]] HttpOptions MetricsHttpOptions();

} // namespace beacond
