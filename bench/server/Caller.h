// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

/// A connection to a server at the loopback that asks one thing at a time. Throws std::runtime_error if it
/// can't connect.
class Caller final
{
public:
    /// How far the reply to the last call has come. Closed: the server ended the connection before it was
    /// whole, or after.
    enum class Progress { Waiting, Answered, Closed };

    explicit Caller(unsigned short port);
    ~Caller();
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    /// For epoll: readable when Receive has something to do.
    [[nodiscard]] int Descriptor() const { return m_descriptor; }

    /// Answers false if the server has ended the connection.
    [[nodiscard]] bool Send(std::string_view request);
    /// Takes what has come. Call it only when the descriptor is readable.
    [[nodiscard]] Progress Receive();
    /// Whether the status of the last reply is 200.
    [[nodiscard]] bool IsFine() const;

private:
    [[nodiscard]] bool IsWhole() const;

    int m_descriptor = -1;
    std::string m_reply;
};

/// A request as the program sends it.
[[nodiscard]] std::string RequestFor(std::string_view target, bool isLast);
