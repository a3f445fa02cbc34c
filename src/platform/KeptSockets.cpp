// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeptSockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// Packets of a kept connection can be lost without an error after a suspend or a change of the network. If
// sent data is not acknowledged in this time, the connection fails and libcurl sends the request again on a
// fresh one. A slower link fails too: the server may then receive the request twice.
void LimitAcknowledgement(curl_socket_t socket)
{
    constexpr unsigned int kMilliseconds = 3000;
    ::setsockopt(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, &kMilliseconds, sizeof kMilliseconds);
}

} // namespace

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
        LimitAcknowledgement(socket);
    }
}

// libcurl would read the bytes as the reply to the next request. It replaces a closed connection only if
// there is nothing left to read.
void KeptSockets::EndUnclean() const
{
    for (const curl_socket_t socket : m_sockets) {
        char bytes[4096];
        if (::recv(socket, bytes, sizeof bytes, MSG_PEEK | MSG_DONTWAIT) > 0) {
            ::shutdown(socket, SHUT_RDWR);
            while (::recv(socket, bytes, sizeof bytes, MSG_DONTWAIT) > 0) {
            }
        }
    }
}

int KeptSockets::OnClose(void* self, curl_socket_t socket)
{
    static_cast<KeptSockets*>(self)->m_sockets.erase(socket);
    return ::close(socket);
}
