// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <curl/curl.h>

#include <set>

/// The sockets of the connections that libcurl keeps open. Must outlive the multi handle, which closes them;
/// used by one thread at a time.
class KeptSockets final
{
public:
    KeptSockets() = default;
    KeptSockets(const KeptSockets&) = delete;
    KeptSockets& operator=(const KeptSockets&) = delete;

    /// Before each request: sets the handle up so that its sockets leave this set when they are closed.
    void Watch(CURL* easy);
    /// After each request, before the handle is removed from the multi handle: adds its socket if the
    /// connection is kept. From then on the connection fails if sent data is not acknowledged for 3 seconds.
    void Keep(CURL* easy);
    /// Closes each connection on which bytes have arrived behind a reply. Call it only while no request runs.
    void EndUnclean() const;

private:
    static int OnClose(void* self, curl_socket_t socket);

    std::set<curl_socket_t> m_sockets;
};
