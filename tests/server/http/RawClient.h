// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// A connection to the loopback that sends and receives bytes as they are. Each call waits at most kPatience.
class RawClient final
{
public:
    static constexpr std::chrono::seconds kPatience{20};

    /// @param receiveBuffer the size that is asked of the kernel; 0 is its own
    explicit RawClient(unsigned short port, int receiveBuffer = 0);
    RawClient(RawClient&& other) noexcept;
    RawClient& operator=(RawClient&&) = delete;
    ~RawClient();

    /// Answers false if the server has closed the connection.
    bool Send(std::string_view bytes) const;
    /// Tells the server that nothing more comes.
    void EndSending() const;
    void Close();

    /// All that comes until the server closes.
    [[nodiscard]] std::string ReadToEnd();
    /// Reads through @p mark, or to the end if the server closes before.
    [[nodiscard]] std::string ReadThrough(std::string_view mark);
    /// Forgets at most a few KiB of what has come, without waiting for more.
    void ReceivePart() const;
    /// Waits until the server closes. Answers whether nothing came before.
    [[nodiscard]] bool IsClosedSilently() { return ReadToEnd().empty(); }

    /// Whether the server closed without having read everything, which can cost a client the answer.
    [[nodiscard]] bool WasReset() const { return m_wasReset; }

private:
    [[nodiscard]] bool ReceiveMore();

    int m_descriptor = -1;
    std::string m_received;
    bool m_wasReset = false;
};

/// @p answer without its Date fields, which are checked for their form.
[[nodiscard]] std::string WithoutDates(std::string answer);
