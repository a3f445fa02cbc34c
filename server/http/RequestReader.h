// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "http/Message.h"
#include "http/RequestParser.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace beacond {

/// Receives the bytes of a connection and finds the requests in them, one after the other.
class RequestReader final
{
public:
    /// The request line and the header fields together, line ends included.
    static constexpr std::size_t kHeaderLimit = 8192;
    static constexpr std::size_t kBodyLimit = 16UL * 1024;

    enum class State {
        NeedsInput,
        Complete, ///< Message() is whole
        Refused   ///< RefusalStatus() has the reason; the following bytes are not interpreted
    };

    /// Discards all bytes, to be used for another connection.
    void Clear();

    /// The buffer for the next bytes. Has room for at least one byte while more are needed.
    [[nodiscard]] std::span<char> Room();
    /// Accepts the first @p count bytes of Room().
    [[nodiscard]] State Append(std::size_t count);
    /// Begins a new request with the bytes after the last one.
    [[nodiscard]] State Next();

    [[nodiscard]] bool HasBytesLeft() const { return m_begin != m_end; }
    [[nodiscard]] bool IsInBody() const { return m_parser.has_value(); }
    /// Whether the client waits for "100 Continue" before it sends the body. True at most once for each
    /// request.
    [[nodiscard]] bool TakeContinue();

    [[nodiscard]] bool HasMessage() const { return m_parser && (m_hasUnreadBody || m_parser->is_done()); }
    [[nodiscard]] const Request& Message() const { return m_request; }
    /// Sets the client's address and the delay of the connection's thread.
    void SetOrigin(const boost::asio::ip::address& client, std::chrono::steady_clock::duration delay)
    {
        m_request.client = client;
        m_request.delay = delay;
    }
    [[nodiscard]] std::string_view ForwardedFor() const { return m_parser->ForwardedFor(); }
    [[nodiscard]] bool IsHttp11() const { return m_parser->IsHttp11(); }
    /// Whether another request may follow on the connection. A body that was not read rules it out.
    [[nodiscard]] bool IsKeptAlive() const { return !m_hasUnreadBody && m_parser->keep_alive(); }
    [[nodiscard]] bool HasUnreadBody() const { return m_hasUnreadBody; }
    [[nodiscard]] unsigned RefusalStatus() const { return m_refusalStatus; }

private:
    [[nodiscard]] State Parse();
    [[nodiscard]] State FindHeader();
    [[nodiscard]] State ParseHeader(std::size_t length);
    [[nodiscard]] State ParseBody();
    [[nodiscard]] State Refuse(unsigned status);
    [[nodiscard]] std::string_view Bytes() const { return {m_buffer.data() + m_begin, m_end - m_begin}; }

    std::array<char, kHeaderLimit> m_buffer{};
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::size_t m_line = 0; ///< in Bytes(): the start of the line that is not complete yet
    Request m_request;
    std::optional<RequestParser> m_parser; ///< from the end of the header on
    bool m_awaitsContinue = false;
    bool m_hasUnreadBody = false;
    unsigned m_refusalStatus = 0;
};

} // namespace beacond
