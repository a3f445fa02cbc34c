// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <arpa/inet.h>
#include <linux/filter.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

/// The calls that each system has in its own way.
namespace Sockets {

inline constexpr int kSending = SHUT_WR;

[[nodiscard]] inline int Listener()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    return socket;
}

[[nodiscard]] inline int Accept(int listener)
{
    return ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
}

[[nodiscard]] inline pollfd Watched(int socket, short events)
{
    return {socket, events, 0};
}

[[nodiscard]] inline int Poll(pollfd* watched, nfds_t count, int milliseconds)
{
    return ::poll(watched, count, milliseconds);
}

/// Without waiting: how many bytes were sent, 0 if none can be now, -1 on an error.
[[nodiscard]] inline qsizetype Send(int socket, const char* bytes, qsizetype size)
{
    const ssize_t count = ::send(socket, bytes, static_cast<std::size_t>(size), MSG_NOSIGNAL | MSG_DONTWAIT);
    return count < 0 && errno == EAGAIN ? 0 : count;
}

/// From now on incoming packets are not acknowledged.
inline void Swallow(int socket)
{
    sock_filter nothing = BPF_STMT(BPF_RET | BPF_K, 0);
    const sock_fprog program{1, &nothing};
    if (::setsockopt(socket, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) != 0) {
        qFatal("the connection can't be made deaf");
    }
}

/// Two ends, of which the first becomes readable by a byte written to the second.
[[nodiscard]] inline bool Pipe(int (&ends)[2])
{
    return ::pipe(ends) == 0;
}

inline void WriteByte(int end)
{
    const char byte = 0;
    if (::write(end, &byte, 1) != 1) {
        qFatal("the byte can't be written");
    }
}

inline void Close(int socket)
{
    ::close(socket);
}

} // namespace Sockets
