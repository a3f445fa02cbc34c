// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProxySettings.h"
#include "platform/SystemHttp.h"

#include <windows.h>
#include <winhttp.h>
#include <winsock2.h>
#include <ws2tcpip.h>

#include <memory>

namespace {

struct FreeText
{
    void operator()(wchar_t* text) const { GlobalFree(text); }
};
using SystemText = std::unique_ptr<wchar_t, FreeText>;

QString Text(const SystemText& text)
{
    return text == nullptr ? QString() : QString::fromWCharArray(text.get());
}

// The proxy that the user has set for all programs. A script that computes the proxy (PAC) is not run.
ProxySettings ReadProxySettings()
{
    WINHTTP_CURRENT_USER_IE_PROXY_CONFIG found = {};
    if (WinHttpGetIEProxyConfigForCurrentUser(&found) == FALSE) {
        return {};
    }
    const SystemText script(found.lpszAutoConfigUrl);
    const SystemText proxies(found.lpszProxy);
    const SystemText exceptions(found.lpszProxyBypass);
    return {Text(proxies), Text(exceptions)};
}

} // namespace

void PrepareForHttp() {}

void UseSystemProxy(CURL* easy, const QByteArray& scheme, const QByteArray& host)
{
    const ProxySettings settings = ReadProxySettings();
    const QByteArray proxy = settings.ProxyFor(scheme, host);
    if (settings.proxies.isEmpty()) {
        // libcurl reads the proxy from the environment.
        return;
    }
    // Empty for an exception: without a proxy, that of the environment neither.
    curl_easy_setopt(easy, CURLOPT_PROXY, proxy.constData());
}

void UseSystemCertificates(CURL* easy, bool isProbe)
{
    if (isProbe) {
        // No limit of libcurl ends that question, and the probe blocks the windows. It sends nothing secret.
        curl_easy_setopt(easy, CURLOPT_SSL_OPTIONS, long{CURLSSLOPT_NO_REVOKE});
        return;
    }
    // A list of revoked certificates that can't be reached is no failure: schannel would otherwise refuse
    // servers whose authority publishes none, and all while that authority does not answer.
    curl_easy_setopt(easy, CURLOPT_SSL_OPTIONS, long{CURLSSLOPT_REVOKE_BEST_EFFORT});
}

void LimitAcknowledgement(curl_socket_t socket)
{
    // TCP_MAXRT of ws2ipdef.h, which mingw does not have: the time for which a packet is sent again.
    constexpr int kLongestRetransmission = 5;
    constexpr DWORD kSeconds = 3;
    setsockopt(socket, IPPROTO_TCP, kLongestRetransmission, reinterpret_cast<const char*>(&kSeconds),
               sizeof kSeconds);
}

// The sockets of libcurl do not block.
bool HasUnreadBytes(curl_socket_t socket)
{
    char byte = 0;
    return recv(socket, &byte, 1, MSG_PEEK) > 0;
}

void ShutDown(curl_socket_t socket)
{
    shutdown(socket, SD_BOTH);
    char bytes[4096];
    while (recv(socket, bytes, sizeof bytes, 0) > 0) {
    }
}

int CloseSocket(curl_socket_t socket)
{
    return closesocket(socket);
}
