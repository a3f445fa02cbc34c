// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/ProxyList.h"
#include "support/Report.h"

#include <chrono>
#include <cstddef>

namespace beacond {

/// The limits of a server. A connection is closed within a quarter of a second after its time limit.
struct HttpOptions
{
    unsigned threads = 0; ///< 0: one for each core
    std::size_t maxConnections = 10'000;
    /// An IPv6 address counts as its /64. A configured proxy has no such limit.
    std::size_t maxConnectionsPerAddress = 1'000;
    ProxyList proxies;

    /// From the first byte of a request, or from the start of the connection, to the end of the header.
    std::chrono::milliseconds headerTime{5'000};
    std::chrono::milliseconds bodyTime{10'000};  ///< from the end of the header to the end of the body
    std::chrono::milliseconds idleTime{75'000};  ///< from an answer to the next request
    std::chrono::milliseconds writeTime{10'000}; ///< until the client receives the next part of an answer
    /// Until the client has received a whole answer; one more second for each answerBytesPerSecond of its
    /// size.
    std::chrono::milliseconds answerTime{10'000};
    std::size_t answerBytesPerSecond = 16'384;

    Report reportError = [](std::string_view) {};   ///< failures of the server itself
    Report reportWarning = [](std::string_view) {}; ///< mistakes of its configuration
};

} // namespace beacond
