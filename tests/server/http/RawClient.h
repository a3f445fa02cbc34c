// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// A connection on the loopback that sends and receives raw bytes. Each call waits at most kPatience.
class RawClient final
{
public:
    static constexpr std::chrono::seconds kPatience{20};

    /// @param receiveBuffer the requested size of the kernel's buffer; 0 for the default
    explicit RawClient(unsigned short port, int receiveBuffer = 0);
    RawClient(RawClient&& other) noexcept;
    RawClient& operator=(RawClient&&) = delete;
    ~RawClient();

    /// Returns false if the server has closed the connection.
    bool Send(std::string_view bytes) const;
    /// Shuts down the sending side of the connection.
    void EndSending() const;
    void Close();

    /// All bytes until the server closes the connection.
    [[nodiscard]] std::string ReadToEnd();
    /// Reads up to and including @p mark, or to the end if the server closes before.
    [[nodiscard]] std::string ReadThrough(std::string_view mark);
    /// Discards a few KiB at most of the received bytes, without waiting for more.
    void ReceivePart() const;
    /// Waits until the server closes the connection. Returns whether no byte came before.
    [[nodiscard]] bool IsClosedSilently() { return ReadToEnd().empty(); }

    /// Whether the server closed with unread bytes, which can lose the answer of a client.
    [[nodiscard]] bool WasReset() const { return m_wasReset; }

private:
    [[nodiscard]] bool ReceiveMore();

    int m_descriptor = -1;
    std::string m_received;
    bool m_wasReset = false;
};

/// @p answer without its Date fields, which are checked for their form.
[[nodiscard]] std::string WithoutDates(std::string answer);
