// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

/// A connection to a server on the loopback with one request at a time. Throws std::runtime_error if it can't
/// connect.
class Caller final
{
public:
    /// The state of the reply to the last call. Closed: the server has closed the connection, before the
    /// reply was complete or after.
    enum class Progress { Waiting, Answered, Closed };

    explicit Caller(unsigned short port);
    ~Caller();
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    /// For epoll: readable when Receive should be called.
    [[nodiscard]] int Descriptor() const { return m_descriptor; }

    /// Returns false if the server has closed the connection.
    [[nodiscard]] bool Send(std::string_view request);
    /// Reads the available bytes. Call it only when the descriptor is readable.
    [[nodiscard]] Progress Receive();
    /// Whether the status of the last reply is 200.
    [[nodiscard]] bool IsFine() const;

private:
    [[nodiscard]] bool IsWhole() const;

    int m_descriptor = -1;
    std::string m_reply;
};

/// A request in the form of the desktop program.
[[nodiscard]] std::string RequestFor(std::string_view target, bool isLast);
