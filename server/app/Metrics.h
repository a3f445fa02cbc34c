// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace beacond {

struct ChannelFigures;
struct HttpFigures;
struct LimitFigures;
struct MessageFigures;
struct SenderFigures;

/// A metric that is always in /metrics.
inline constexpr char kOpenConnectionsMetric[] = "beacond_connections_open";

/// The figures of the service in the text format of Prometheus.
[[nodiscard]] std::string MetricsText(const HttpFigures& http, const MessageFigures& messages,
                                      const LimitFigures& limits);

/// A channel in the metrics.
struct ChannelMetrics
{
    std::string name;
    const ChannelFigures& figures;
};

/// The same for the sending of texts.
[[nodiscard]] std::string SendingMetricsText(const SenderFigures& sender,
                                             const std::vector<ChannelMetrics>& channels);

} // namespace beacond
