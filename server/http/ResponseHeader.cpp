// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/ResponseHeader.h"

#include "http/Message.h"

#include <boost/beast/http/status.hpp>

#include <array>

namespace {

// Fixed English names: no locale may change them.
constexpr std::array<const char*, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

void AppendTwoDigits(std::string& text, int number)
{
    text += static_cast<char>('0' + number / 10 % 10);
    text += static_cast<char>('0' + number % 10);
}

void AppendField(std::string& text, std::string_view name, std::string_view value)
{
    text += name;
    text += ": ";
    text += value;
    text += "\r\n";
}

bool IsFieldValue(std::string_view value)
{
    return value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

} // namespace

namespace beacond {

std::string_view DateText::At(std::time_t now)
{
    if (now == m_second) {
        return m_text;
    }
    m_second = now;
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    m_text = kDays[static_cast<std::size_t>(utc.tm_wday)];
    m_text += ", ";
    AppendTwoDigits(m_text, utc.tm_mday);
    m_text += ' ';
    m_text += kMonths[static_cast<std::size_t>(utc.tm_mon)];
    m_text += ' ';
    m_text += std::to_string(utc.tm_year + 1900);
    char separator = ' ';
    for (const int number : {utc.tm_hour, utc.tm_min, utc.tm_sec}) {
        m_text += separator;
        AppendTwoDigits(m_text, number);
        separator = ':';
    }
    m_text += " GMT";
    return m_text;
}

void WriteHeader(std::string& text, const Response& response, Persistence persistence, std::string_view date)
{
    const auto reason =
        boost::beast::http::obsolete_reason(boost::beast::http::int_to_status(response.status));
    text = "HTTP/1.1 ";
    text += std::to_string(response.status);
    text += ' ';
    text.append(reason.data(), reason.size());
    text += "\r\n";
    AppendField(text, "Date", date);
    if (MayHaveBody(response.status)) {
        if (!response.contentType.empty()) {
            AppendField(text, "Content-Type", response.contentType);
        }
        AppendField(text, "Content-Length", std::to_string(response.body.size()));
    }
    for (const Response::Header& header : response.headers) {
        if (IsFieldValue(header.value)) {
            AppendField(text, header.name, header.value);
        }
    }
    if (persistence != Persistence::KeepAlive) {
        AppendField(text, "Connection", persistence == Persistence::Close ? "close" : "keep-alive");
    }
    text += "\r\n";
}

} // namespace beacond
