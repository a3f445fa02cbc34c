// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace beacond {

struct Response;

/// The text of a Date field, renewed once a second.
class DateText final
{
public:
    [[nodiscard]] std::string_view At(std::time_t now);

private:
    std::time_t m_second = -1;
    std::string m_text;
};

/// Whether an answer of this status may have a body and a length (RFC 9110, sections 15.3.5 and 15.4.5).
[[nodiscard]] constexpr bool MayHaveBody(unsigned status)
{
    return status != 204 && status != 304;
}

/// Whether the connection is closed after an answer, and if not, how the header says so.
enum class Persistence { Close, KeepAlive, KeepAliveAsOfHttp10 };

/// Replaces @p text by the status line and the header fields of @p response, including the final empty line.
/// Omits a field whose value contains a line end or a NUL.
void WriteHeader(std::string& text, const Response& response, Persistence persistence, std::string_view date);

} // namespace beacond
