// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <curl/curl.h>

// The part of HTTP that differs between the systems: proxy, certificates, sockets.

/// Call it before libcurl is started.
void PrepareForHttp();

/// Sets the handle of a request up for the system's proxy, where libcurl does not find it itself.
/// @param scheme http or https
/// @param host of the URL; not this computer itself
void UseSystemProxy(CURL* easy, const QByteArray& scheme, const QByteArray& host);

/// Sets the handle of a request up for the system's certificates, where libcurl does not do so itself. On
/// Windows the system also asks whether a certificate is revoked, for up to 15 seconds, unless @p isProbe.
void UseSystemCertificates(CURL* easy, bool isProbe);

/// Packets of a kept connection can be lost without an error after a suspend or a change of the network. If
/// sent data is not acknowledged for 3 seconds, the connection fails.
void LimitAcknowledgement(curl_socket_t socket);

/// Whether bytes have arrived that are not read yet. Does not block; the socket is a socket of libcurl.
[[nodiscard]] bool HasUnreadBytes(curl_socket_t socket);

/// Ends the connection and drops the bytes that are not read yet; the socket stays open.
void ShutDown(curl_socket_t socket);

/// Returns 0 if the socket was closed.
int CloseSocket(curl_socket_t socket);
