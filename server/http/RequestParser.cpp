// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/RequestParser.h"

#include "http/Message.h"
#include "support/Ascii.h"

#include <boost/beast/core/string.hpp>
#include <boost/beast/http/error.hpp>

#include <algorithm>
#include <iterator>

namespace {

namespace http = boost::beast::http;
using boost::beast::iequals;

beacond::Method MethodOf(http::verb verb)
{
    switch (verb) {
    case http::verb::get:
        return beacond::Method::Get;
    case http::verb::head:
        return beacond::Method::Head;
    case http::verb::post:
        return beacond::Method::Post;
    default:
        return beacond::Method::Other;
    }
}

bool IsHostCharacter(char character)
{
    return beacond::IsLetterOrDigit(character) ||
           std::string_view("-._~%:[]").find(character) != std::string_view::npos;
}

bool IsHost(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), IsHostCharacter);
}

bool IsNumber(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), &beacond::IsDigit);
}

// The length of "http://" or "https://" at the start of a target, otherwise 0.
std::size_t SchemeLength(std::string_view target)
{
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (iequals(target.substr(0, scheme.size()), scheme)) {
            return scheme.size();
        }
    }
    return 0;
}

} // namespace

namespace beacond {

RequestParser::RequestParser(Request& request, std::uint32_t headerLimit, std::uint64_t bodyLimit)
    : m_request(request)
{
    header_limit(headerLimit);
    body_limit(bodyLimit);
}

void RequestParser::on_request_impl(Verb method, Text, Text target, int version, Error& error)
{
    m_request.method = MethodOf(method);
    m_isHttp11 = version >= 11;
    if (m_request.method != Method::Post) {
        // The body is never read, so that its length does not matter.
        body_limit(boost::none);
    }
    SplitTarget({target.data(), target.size()}, error);
}

void RequestParser::SplitTarget(std::string_view target, Error& error)
{
    std::string& path = m_request.path;
    if (const std::size_t scheme = SchemeLength(target); scheme > 0) {
        target.remove_prefix(scheme);
        const std::string_view host = target.substr(0, target.find_first_of("/?#"));
        target.remove_prefix(host.size());
        if (host.empty() || !IsHost(host)) {
            error = http::error::bad_target;
            return;
        }
        if (!target.starts_with('/')) {
            path += '/';
        }
    } else if (!target.starts_with('/')) {
        error = http::error::bad_target;
        return;
    }
    const std::size_t mark = target.find('?');
    path += target.substr(0, mark);
    if (mark != std::string_view::npos) {
        m_request.query = target.substr(mark + 1);
    }
}

void RequestParser::on_field_impl(Field name, Text nameText, Text value, Error& error)
{
    if (m_isHeaderDone) {
        return; // a trailer must not change the header
    }
    const std::string_view text(value.data(), value.size());
    if (m_request.method == Method::Post) {
        RequestField& field = m_request.fields.emplace_back();
        std::transform(nameText.begin(), nameText.end(), std::back_inserter(field.name), &ToLower);
        field.value = text;
    }
    switch (name) {
    case Field::host:
        if (m_hasHost || !IsHost(text)) {
            error = http::error::bad_value;
        }
        m_hasHost = true;
        break;
    case Field::content_type:
        m_request.contentType = text;
        break;
    case Field::content_length:
        if (m_hasLength || !IsNumber(text)) {
            error = http::error::bad_content_length;
        }
        m_hasLength = true;
        break;
    case Field::transfer_encoding:
        if (!m_isHttp11 || !iequals(value, "chunked")) {
            error = http::error::bad_transfer_encoding;
        }
        break;
    case Field::expect:
        (iequals(value, "100-continue") ? m_expectsContinue : m_expectsMore) = true;
        break;
    default:
        if (iequals(nameText, "X-Forwarded-For")) {
            m_forwardedFor = text;
        }
    }
}

void RequestParser::on_header_impl(Error& error)
{
    m_isHeaderDone = true;
    const bool takesNoBody = m_request.method == Method::Get || m_request.method == Method::Head;
    if ((m_isHttp11 && !m_hasHost) || (takesNoBody && HasBody())) {
        error = http::error::bad_field;
    }
}

std::size_t RequestParser::on_body_impl(Text body, Error&)
{
    m_request.body.append(body.data(), body.size());
    return body.size();
}

std::size_t RequestParser::on_chunk_body_impl(std::uint64_t, Text body, Error& error)
{
    return on_body_impl(body, error);
}

// Required by the base class.
void RequestParser::on_response_impl(int, Text, int, Error&) {}
void RequestParser::on_body_init_impl(const boost::optional<std::uint64_t>&, Error&) {}
void RequestParser::on_chunk_header_impl(std::uint64_t, Text, Error&) {}
void RequestParser::on_finish_impl(Error&) {}

} // namespace beacond
