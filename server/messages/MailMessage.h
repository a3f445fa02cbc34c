// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace beacond {

struct OutgoingMessage;

/// The sender of a mail.
struct MailSender
{
    std::string from;    ///< a mail address
    std::string replyTo; ///< the address where STOP ends the messages; empty for none
};

/// A mail in the Internet Message Format (RFC 5322): lines end in CR LF, only ASCII. Header fields contain no
/// line break from @p message.
[[nodiscard]] std::string MailText(const MailSender& sender, const OutgoingMessage& message,
                                   std::chrono::system_clock::time_point date);

/// A header field's text in encoded words (RFC 2047) if it is not plain ASCII; folded. Line breaks and other
/// control characters become spaces.
[[nodiscard]] std::string HeaderText(std::string_view text);

} // namespace beacond
