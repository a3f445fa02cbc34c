// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/FromAddress.h"

#include "messages/MailAddress.h"
#include "support/Ascii.h"

namespace beacond {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

// The value without quoted names and comments, which can contain anything. Nothing if one of them has no end.
std::optional<std::string> WithoutQuotations(std::string_view value)
{
    std::string rest;
    bool isQuoted = false;
    int comments = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if ((isQuoted || comments > 0) && c == '\\') {
            ++i;
        } else if (c == '"' && comments == 0) {
            isQuoted = !isQuoted;
        } else if (c == '(' && !isQuoted) {
            ++comments;
        } else if (c == ')' && comments > 0) {
            --comments;
        } else if (!isQuoted && comments == 0) {
            rest += c;
        }
    }
    return isQuoted || comments > 0 ? std::nullopt : std::optional(rest);
}

} // namespace

std::optional<std::string> FromAddress(std::string_view value)
{
    const std::optional<std::string> rest = WithoutQuotations(value);
    if (!rest) {
        return std::nullopt;
    }
    const std::string_view text = Trimmed(*rest, kSpace);
    const std::size_t begin = text.find('<');
    if (begin == std::string_view::npos) {
        return NormalisedMailAddress(text);
    }
    const bool isOne = text.substr(0, begin).find_first_of(",:;@>") == std::string_view::npos;
    return isOne && text.ends_with('>')
               ? NormalisedMailAddress(text.substr(begin + 1, text.size() - begin - 2))
               : std::nullopt;
}

} // namespace beacond
