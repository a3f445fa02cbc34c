// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemHttp.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

void PrepareForHttp()
{
    // TLS writes to connections that the server has closed, at the latest when it closes them here. SIGPIPE
    // would end the program, and libcurl does not block it (CURLOPT_NOSIGNAL).
    std::signal(SIGPIPE, SIG_IGN);
    // This call keeps OpenSSL from loading the texts of its errors: 0.6 MB that the program never shows.
    OPENSSL_init_ssl(OPENSSL_INIT_NO_LOAD_SSL_STRINGS | OPENSSL_INIT_NO_LOAD_CRYPTO_STRINGS, nullptr);
}

// libcurl reads the proxy from the environment.
void UseSystemProxy(CURL* /*easy*/, const QByteArray& /*scheme*/, const QByteArray& /*host*/) {}

// Debian's libcurl has the path of the system's certificates.
void UseSystemCertificates(CURL* /*easy*/, bool /*isProbe*/) {}

void LimitAcknowledgement(curl_socket_t socket)
{
    constexpr unsigned int kMilliseconds = 3000;
    ::setsockopt(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, &kMilliseconds, sizeof kMilliseconds);
}

bool HasUnreadBytes(curl_socket_t socket)
{
    char byte = 0;
    return ::recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

void ShutDown(curl_socket_t socket)
{
    ::shutdown(socket, SHUT_RDWR);
    char bytes[4096];
    while (::recv(socket, bytes, sizeof bytes, MSG_DONTWAIT) > 0) {
    }
}

int CloseSocket(curl_socket_t socket)
{
    return ::close(socket);
}
