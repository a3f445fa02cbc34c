// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// The proxy settings of a Windows user, as the system stores them.
struct ProxySettings
{
    /// "host:port" for all requests, or "http=host:port;https=host:port;socks=host:port" by their scheme.
    QString proxies;
    /// Names of hosts that are reached without a proxy, with "*" for any letters, and "<local>" for names
    /// without a point.
    QString exceptions;

    /// The proxy for a request, in the form of libcurl's option CURLOPT_PROXY; empty for a direct connection.
    /// @param scheme http or https
    [[nodiscard]] QByteArray ProxyFor(const QByteArray& scheme, const QByteArray& host) const;
};
