// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MailAddress.h"

#include <regex>

namespace beacond {

std::optional<std::string> NormalisedMailAddress(std::string_view typed)
{
    // The longest path of RFC 5321, section 4.5.3.1.3, less its angle brackets.
    constexpr std::size_t kLongest = 254;
    constexpr std::size_t kLongestLocalPart = 64;
    constexpr std::string_view kSpace = " \t\r\n";
    const std::size_t first = typed.find_first_not_of(kSpace);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view text = typed.substr(first, typed.find_last_not_of(kSpace) - first + 1);
    if (text.size() > kLongest || text.find('@') > kLongestLocalPart) {
        return std::nullopt;
    }
    // Of the characters of RFC 5322, section 3.2.3, those that no shell and no option parser knows: an
    // operator's program may hand the address on. And host names.
    static const std::regex kAddress("[A-Za-z0-9_+%=][A-Za-z0-9_+%='-]*(\\.[A-Za-z0-9_+%='-]+)*"
                                     "@([A-Za-z0-9]([A-Za-z0-9-]{0,61}[A-Za-z0-9])?\\.)+"
                                     "[A-Za-z]([A-Za-z0-9-]{0,61}[A-Za-z0-9])?",
                                     std::regex::optimize);
    std::string address(text);
    if (!std::regex_match(address, kAddress)) {
        return std::nullopt;
    }
    for (char& character : address) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return address;
}

} // namespace beacond
