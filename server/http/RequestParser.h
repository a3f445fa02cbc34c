// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/beast/http/basic_parser.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

namespace beacond {

struct Request;

/// Fills a Request from the callbacks of Beast's parser, and refuses messages that two servers might
/// interpret differently: a length given twice or in two ways, any transfer coding except "chunked", a Host
/// that is missing, repeated or invalid, a GET with a body.
class RequestParser final : public boost::beast::http::basic_parser<true>
{
public:
    /// @param request is filled and must outlive the parser
    RequestParser(Request& request, std::uint32_t headerLimit, std::uint64_t bodyLimit);

    [[nodiscard]] const std::string& ForwardedFor() const { return m_forwardedFor; }
    [[nodiscard]] bool IsHttp11() const { return m_isHttp11; }
    [[nodiscard]] bool ExpectsContinue() const { return m_expectsContinue && m_isHttp11; }
    /// Whether the request has an expectation other than "100-continue", which can't be met.
    [[nodiscard]] bool ExpectsMore() const { return m_expectsMore; }
    [[nodiscard]] bool HasBody() const { return chunked() || content_length().value_or(0) > 0; }

private:
    using Verb = boost::beast::http::verb;
    using Field = boost::beast::http::field;
    using Text = boost::beast::string_view;
    using Error = boost::beast::error_code;

    void on_request_impl(Verb method, Text methodText, Text target, int version, Error& error) override;
    void on_response_impl(int code, Text reason, int version, Error& error) override;
    void on_field_impl(Field name, Text nameText, Text value, Error& error) override;
    void on_header_impl(Error& error) override;
    void on_body_init_impl(const boost::optional<std::uint64_t>& length, Error& error) override;
    std::size_t on_body_impl(Text body, Error& error) override;
    void on_chunk_header_impl(std::uint64_t size, Text extensions, Error& error) override;
    std::size_t on_chunk_body_impl(std::uint64_t remaining, Text body, Error& error) override;
    void on_finish_impl(Error& error) override;

    void SplitTarget(std::string_view target, Error& error);

    Request& m_request;
    std::string m_forwardedFor;
    bool m_isHttp11 = false;
    bool m_hasHost = false;
    bool m_hasLength = false;
    bool m_isHeaderDone = false;
    bool m_expectsContinue = false;
    bool m_expectsMore = false;
};

} // namespace beacond
