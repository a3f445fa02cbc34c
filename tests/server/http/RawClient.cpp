// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RawClient.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <regex>
#include <stdexcept>
#include <utility>

RawClient::RawClient(unsigned short port, int receiveBuffer)
    : m_descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    if (receiveBuffer > 0) {
        ::setsockopt(m_descriptor, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof(receiveBuffer));
    }
    const int on = 1;
    ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto* general = reinterpret_cast<const sockaddr*>(&address);
    if (::connect(m_descriptor, general, sizeof(address)) != 0) {
        ::close(m_descriptor);
        throw std::runtime_error("no connection");
    }
}

RawClient::RawClient(RawClient&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_received(std::move(other.m_received))
{
}

RawClient::~RawClient()
{
    Close();
}

void RawClient::Close()
{
    if (m_descriptor >= 0) {
        ::close(std::exchange(m_descriptor, -1));
    }
}

bool RawClient::Send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = ::send(m_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void RawClient::EndSending() const
{
    ::shutdown(m_descriptor, SHUT_WR);
}

bool RawClient::ReceiveMore()
{
    pollfd ready{m_descriptor, POLLIN, 0};
    if (::poll(&ready, 1, static_cast<int>(std::chrono::milliseconds(kPatience).count())) != 1) {
        ADD_FAILURE() << "the server neither answered nor closed; so far: " << m_received;
        return false;
    }
    std::array<char, 65536> bytes{};
    const ssize_t count = ::recv(m_descriptor, bytes.data(), bytes.size(), 0);
    m_received.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    m_wasReset = m_wasReset || count < 0;
    return count > 0;
}

void RawClient::ReceivePart() const
{
    std::array<char, 4096> bytes{};
    (void)::recv(m_descriptor, bytes.data(), bytes.size(), MSG_DONTWAIT);
}

std::string RawClient::ReadToEnd()
{
    while (ReceiveMore()) {
    }
    return std::exchange(m_received, {});
}

std::string RawClient::ReadThrough(std::string_view mark)
{
    std::size_t found = m_received.find(mark);
    while (found == std::string::npos && ReceiveMore()) {
        found = m_received.find(mark);
    }
    if (found == std::string::npos) {
        return std::exchange(m_received, {});
    }
    std::string result = m_received.substr(0, found + mark.size());
    m_received.erase(0, result.size());
    return result;
}

std::string WithoutDates(std::string answer)
{
    static const std::regex date(
        "Date: (Mon|Tue|Wed|Thu|Fri|Sat|Sun), [0-9]{2} (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|"
        "Sep|Oct|Nov|Dec) [0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2} GMT\r\n");
    return std::regex_replace(answer, date, "");
}
