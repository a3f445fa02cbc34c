// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Address.h"

#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// A mail or a text message from a person.
struct IncomingText
{
    Address sender;
    std::string subject; ///< UTF-8; empty for text messages
    std::string text;    ///< UTF-8
};

enum class Wish {
    None,
    SignUp, ///< contains the word "test"
    Stop    ///< its subject or its first line says that the messages shall end
};

/// The wish of a subject and a text. Ignores case, punctuation and the quoted lines of a reply. Stop prevails
/// over SignUp.
[[nodiscard]] Wish WishOf(std::string_view subject, std::string_view text);

/// The words of a text, between white space, at most 100.
[[nodiscard]] std::vector<std::string> WordsOf(std::string_view text);

} // namespace beacond
