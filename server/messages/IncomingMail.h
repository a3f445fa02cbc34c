// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/IncomingText.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace beacond {

/// The reason why a mail must not be answered.
enum class MailRefusal {
    NoSender,        ///< no envelope sender, an empty one, or one that sign-ups don't accept
    Automatic,       ///< from a program or a mailing list
    NotAuthenticated ///< the operator's server has not found that the sender's domain sent it, or the header
                     ///< From names another address
};

/// The number of bytes of a mail that are read; the words of a person stand at its beginning.
inline constexpr std::size_t kMailBytesRead = 64UL * 1024;

/// Reads a mail as the operator's mail server has delivered it. Its sender is the envelope sender, in the
/// header Return-Path above the server's first Received.
///
/// The first Authentication-Results of the server must have a DMARC pass, for the registered domain of the
/// envelope sender: a pass alone proves only the domain of the header From. Further ones may be the sender's.
/// There must be one header From with one address, the envelope sender: a person of the same domain could
/// send an own signed mail again with another's envelope sender.
/// @param message its first kMailBytesRead bytes
/// @param server the authserv-id in the server's Authentication-Results
[[nodiscard]] std::variant<IncomingText, MailRefusal> ReadMail(std::string_view message,
                                                               std::string_view server);

} // namespace beacond
