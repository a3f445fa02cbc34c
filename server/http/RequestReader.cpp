// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/RequestReader.h"

#include <boost/asio/buffer.hpp>
#include <boost/beast/http/error.hpp>

#include <cstring>

namespace {

namespace http = boost::beast::http;

// Keeps the allocated memory of the texts for the next request.
void Empty(beacond::Request& request)
{
    for (std::string* text : {&request.path, &request.query, &request.contentType, &request.body}) {
        text->clear();
    }
    request.fields.clear();
}

} // namespace

namespace beacond {

void RequestReader::Clear()
{
    m_begin = 0;
    m_end = 0;
}

std::span<char> RequestReader::Room()
{
    if (m_begin > 0 && m_end == m_buffer.size()) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    return std::span(m_buffer).subspan(m_end);
}

RequestReader::State RequestReader::Append(std::size_t count)
{
    m_end += count;
    return Parse();
}

RequestReader::State RequestReader::Next()
{
    if (m_begin == m_end) {
        Clear();
    }
    m_line = 0;
    m_parser.reset();
    m_awaitsContinue = false;
    m_hasUnreadBody = false;
    Empty(m_request);
    return Parse();
}

bool RequestReader::TakeContinue()
{
    return std::exchange(m_awaitsContinue, false);
}

RequestReader::State RequestReader::Refuse(unsigned status)
{
    m_refusalStatus = status;
    return State::Refused;
}

RequestReader::State RequestReader::Parse()
{
    return m_parser ? ParseBody() : FindHeader();
}

// Check the lines here: Beast's parser would wait for the rest of a header whose lines end in LF, and would
// accept a field that continues on the next line.
RequestReader::State RequestReader::FindHeader()
{
    for (;;) {
        const std::string_view bytes = Bytes();
        const std::size_t end = bytes.find('\n', m_line);
        if (end == std::string_view::npos) {
            break;
        }
        const std::string_view line = bytes.substr(m_line, end + 1 - m_line);
        if (!line.ends_with("\r\n")) {
            return Refuse(400);
        }
        if (line.size() == 2 && m_line > 0) {
            return ParseHeader(end + 1);
        }
        if (line.size() == 2) {
            m_begin += line.size(); // an empty line before a request is ignored (RFC 9112, section 2.2)
            continue;
        }
        if (line.front() == ' ' || line.front() == '\t') {
            return Refuse(400);
        }
        m_line = end + 1;
    }
    if (Bytes().size() < kHeaderLimit) {
        return State::NeedsInput;
    }
    return Refuse(m_line == 0 ? 414 : 431);
}

RequestReader::State RequestReader::ParseHeader(std::size_t length)
{
    m_parser.emplace(m_request, static_cast<std::uint32_t>(kHeaderLimit), kBodyLimit);
    boost::beast::error_code error;
    m_parser->put(boost::asio::buffer(m_buffer.data() + m_begin, length), error);
    m_begin += length;
    if (error) {
        return Refuse(error == http::error::body_limit ? 413 : 400);
    }
    if (m_parser->ExpectsMore()) {
        return Refuse(417);
    }
    if (m_request.method != Method::Post) {
        m_hasUnreadBody = m_parser->HasBody();
        return State::Complete;
    }
    m_awaitsContinue = m_parser->ExpectsContinue() && !HasBytesLeft();
    return ParseBody();
}

RequestReader::State RequestReader::ParseBody()
{
    // Beast 1.81 asserts that the last chunk, "0" and two line ends, arrives in one piece. Wait for five
    // bytes: a chunked body that has not ended has at least these left.
    const std::size_t least = m_parser->chunked() ? 5 : 1;
    while (!m_parser->is_done()) {
        if (Bytes().size() < least) {
            return State::NeedsInput;
        }
        boost::beast::error_code error;
        m_begin += m_parser->put(boost::asio::buffer(m_buffer.data() + m_begin, m_end - m_begin), error);
        if (error == http::error::need_more) {
            // Only a chunk header or a trailer that fills the whole buffer leaves no room.
            return Room().empty() ? Refuse(400) : State::NeedsInput;
        }
        if (error) {
            return Refuse(error == http::error::body_limit ? 413 : 400);
        }
    }
    return State::Complete;
}

} // namespace beacond
