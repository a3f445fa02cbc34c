// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeptSockets.h"

#include "platform/SystemHttp.h"

void KeptSockets::Watch(CURL* easy)
{
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &KeptSockets::OnClose);
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
}

void KeptSockets::Keep(CURL* easy)
{
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(easy, CURLINFO_ACTIVESOCKET, &socket);
    if (socket != CURL_SOCKET_BAD) {
        m_sockets.insert(socket);
        // libcurl then sends the request again on a fresh connection. A slower link fails too: the server may
        // then receive the request twice.
        LimitAcknowledgement(socket);
    }
}

// libcurl would read the bytes as the reply to the next request. It replaces a closed connection only if
// there is nothing left to read.
void KeptSockets::EndUnclean() const
{
    for (const curl_socket_t socket : m_sockets) {
        if (HasUnreadBytes(socket)) {
            ShutDown(socket);
        }
    }
}

int KeptSockets::OnClose(void* self, curl_socket_t socket)
{
    static_cast<KeptSockets*>(self)->m_sockets.erase(socket);
    return CloseSocket(socket);
}
