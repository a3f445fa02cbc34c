// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <winsock2.h>
#include <ws2tcpip.h>

/// The calls that each system has in its own way. A socket of Windows fits an int.
namespace Sockets {

inline constexpr int kSending = SD_SEND;

[[nodiscard]] inline int Number(SOCKET socket)
{
    return static_cast<int>(socket);
}

[[nodiscard]] inline SOCKET Handle(int socket)
{
    return static_cast<SOCKET>(socket);
}

[[nodiscard]] inline int Listener()
{
    WSADATA data;
    if (::WSAStartup(MAKEWORD(2, 2), &data) != 0) {
        qFatal("no sockets");
    }
    return Number(::socket(AF_INET, SOCK_STREAM, 0));
}

[[nodiscard]] inline int Accept(int listener)
{
    return Number(::accept(Handle(listener), nullptr, nullptr));
}

[[nodiscard]] inline pollfd Watched(int socket, short events)
{
    return {Handle(socket), events, 0};
}

[[nodiscard]] inline int Poll(pollfd* watched, ULONG count, int milliseconds)
{
    return ::WSAPoll(watched, count, milliseconds);
}

/// Without waiting: how many bytes were sent, 0 if none can be now, -1 on an error.
[[nodiscard]] inline qsizetype Send(int socket, const char* bytes, qsizetype size)
{
    u_long on = 1;
    ::ioctlsocket(Handle(socket), FIONBIO, &on);
    const int count = ::send(Handle(socket), bytes, static_cast<int>(size), 0);
    const bool isFull = count < 0 && ::WSAGetLastError() == WSAEWOULDBLOCK;
    u_long off = 0;
    ::ioctlsocket(Handle(socket), FIONBIO, &off);
    return isFull ? 0 : count;
}

/// Windows has no filter for a socket.
inline void Swallow(int /*socket*/)
{
    qFatal("the connection can't be made deaf");
}

inline void Close(int socket)
{
    ::closesocket(Handle(socket));
}

/// Two ends, of which the first becomes readable by a byte written to the second.
[[nodiscard]] inline bool Pipe(int (&ends)[2])
{
    const int listener = Listener();
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    ends[1] = Listener();
    const bool isConnected = ::bind(Handle(listener), generic, length) == 0 &&
                             ::listen(Handle(listener), 1) == 0 &&
                             ::getsockname(Handle(listener), generic, &length) == 0 &&
                             ::connect(Handle(ends[1]), generic, length) == 0;
    ends[0] = isConnected ? Accept(listener) : -1;
    Close(listener);
    return isConnected;
}

inline void WriteByte(int end)
{
    const char byte = 0;
    if (::send(Handle(end), &byte, 1, 0) != 1) {
        qFatal("the byte can't be written");
    }
}

} // namespace Sockets
