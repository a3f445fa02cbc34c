// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Caller.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

Caller::Caller(unsigned short port)
    : m_descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        ::close(m_descriptor);
        throw std::runtime_error("no connection");
    }
}

Caller::~Caller()
{
    ::close(m_descriptor);
}

bool Caller::Send(std::string_view request)
{
    m_reply.clear();
    return ::send(m_descriptor, request.data(), request.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(request.size());
}

Caller::Progress Caller::Receive()
{
    std::array<char, 16'384> bytes{};
    const ssize_t count = ::recv(m_descriptor, bytes.data(), bytes.size(), 0);
    if (count <= 0) {
        return Progress::Closed;
    }
    m_reply.append(bytes.data(), static_cast<std::size_t>(count));
    return IsWhole() ? Progress::Answered : Progress::Waiting;
}

bool Caller::IsFine() const
{
    return m_reply.starts_with("HTTP/1.1 200 ");
}

// Both servers write the length of every reply in this form.
bool Caller::IsWhole() const
{
    constexpr std::string_view kLength = "\r\nContent-Length: ";
    const std::size_t end = m_reply.find("\r\n\r\n");
    const std::size_t length = m_reply.find(kLength);
    return end != std::string::npos && length < end &&
           m_reply.size() >= end + 4 + std::strtoul(m_reply.c_str() + length + kLength.size(), nullptr, 10);
}

std::string RequestFor(std::string_view target, bool isLast)
{
    return "GET " + std::string(target) +
           " HTTP/1.1\r\nHost: localhost\r\nUser-Agent: DuskBeacon/1.0.5\r\nAccept-Encoding: gzip\r\n" +
           (isLast ? "Connection: close\r\n\r\n" : "\r\n");
}
