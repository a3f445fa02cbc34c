// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <curl/curl.h>

#include <set>

/// The sockets of the connections that libcurl keeps. Outlives the multi handle, which closes them; used by
/// one thread at a time.
class KeptSockets final
{
public:
    KeptSockets() = default;
    KeptSockets(const KeptSockets&) = delete;
    KeptSockets& operator=(const KeptSockets&) = delete;

    /// Before each request: sets the handle up so that a socket which it opens is forgotten when it is
    /// closed.
    void Watch(CURL* easy);
    /// After each request, while the handle is still added: remembers its socket if the connection is kept.
    /// Data sent on it that is not acknowledged within 3 seconds ends the connection.
    void Keep(CURL* easy);
    /// Ends each connection on which bytes have come that belong to no request. Only while none is in use.
    void EndUnclean() const;

private:
    static int OnClose(void* self, curl_socket_t socket);

    std::set<curl_socket_t> m_sockets;
};
