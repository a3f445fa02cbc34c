// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"
#include "http/HttpOptions.h"
#include "http/ListeningSocket.h"

#include <stdexcept>
#include <string>

namespace beacond {

/// A listener could not be opened; the text names the address and the reason.
class ListenError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Throws ListenError.
/// @param key the key of the configuration that names the address
[[nodiscard]] ListeningSocket Listen(const std::string& key, const ListenAddress& address);

/// The socket that the service manager passes on, otherwise one at the configured address. Call it before
/// other threads run. Throws ListenError, also for an unusable socket.
[[nodiscard]] ListeningSocket MainListener(const Settings& settings);

/// The limits of the main listener. Raises the process's limit of open files as far as permitted, and lowers
/// the number of connections to that limit, with a warning.
[[nodiscard]] HttpOptions MainHttpOptions(const Settings& settings);
/// The limits of the listener for metrics: 16 connections, each closed after five seconds without a request.
[[nodiscard]] HttpOptions MetricsHttpOptions();

} // namespace beacond
