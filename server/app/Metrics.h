// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace beacond {

struct HttpFigures;
struct LimitFigures;
struct MessageFigures;

/// A metric that is always in /metrics.
inline constexpr char kOpenConnectionsMetric[] = "beacond_connections_open";

/// The figures of the service in the text format of Prometheus.
[[nodiscard]] std::string MetricsText(const HttpFigures& http, const MessageFigures& messages,
                                      const LimitFigures& limits);

} // namespace beacond
