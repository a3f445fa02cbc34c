// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/Query.h"

#include "support/Utf8.h"

#include <algorithm>
#include <charconv>

namespace {

// The byte of an escape at the start of @p text, or -1.
int EscapedByte(std::string_view text)
{
    if (text.size() < 3 || text.front() != '%') {
        return -1;
    }
    int byte = 0;
    const char* end = text.data() + 3;
    // Refuse a minus sign, which from_chars would accept.
    const auto [stop, problem] = std::from_chars(text.data() + 1, end, byte, 16);
    return problem == std::errc() && stop == end && byte >= 0 && text[1] != '-' ? byte : -1;
}

std::string Decoded(std::string_view text, bool isPlusSpace)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const int escaped = EscapedByte(text);
        const char plain = isPlusSpace && text.front() == '+' ? ' ' : text.front();
        bytes += escaped < 0 ? plain : static_cast<char>(escaped);
        text.remove_prefix(escaped < 0 ? 1 : 3);
    }
    return bytes;
}

bool IsControl(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

} // namespace

namespace beacond {

Query::Query(std::string_view text, Plus plus)
    : m_plus(plus)
{
    while (!text.empty() && m_count < kMostParameters) {
        const std::size_t end = std::min(text.find('&'), text.size());
        const std::string_view parameter = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (parameter.empty()) {
            continue;
        }
        const std::size_t equals = std::min(parameter.find('='), parameter.size());
        m_parameters[m_count++] = {parameter.substr(0, equals),
                                   parameter.substr(std::min(equals + 1, parameter.size()))};
    }
}

std::string Query::Value(std::string_view name) const
{
    const auto* end = m_parameters.begin() + m_count;
    const auto* found = std::find_if(m_parameters.begin(), end,
                                     [name](const Parameter& parameter) { return parameter.name == name; });
    if (found == end) {
        return {};
    }
    std::string value = Decoded(found->value, m_plus == Plus::Space);
    if (!IsValidUtf8(value)) {
        value = FromWindows1252(value);
    }
    std::replace_if(value.begin(), value.end(), IsControl, ' ');
    return value;
}

} // namespace beacond
