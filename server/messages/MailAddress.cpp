// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MailAddress.h"

#include "support/Ascii.h"

#include <libpsl.h>

#include <algorithm>

namespace beacond {

namespace {

// RFC 5321, sections 4.5.3.1.1 and 4.5.3.1.3 (less the angle brackets), and RFC 1035, section 2.3.4.
constexpr std::size_t kLongest = 254;
constexpr std::size_t kLongestLocalPart = 64;
constexpr std::size_t kLongestLabel = 63;

// Some of the characters of RFC 5322, section 3.2.3. A leading "-" or "'" is refused: another program could
// read it as an option. "'" remains special in a shell.
bool IsAtom(std::string_view text)
{
    constexpr std::string_view kMarks = "_+%='-";
    return !text.empty() && text.front() != '-' && text.front() != '\'' &&
           std::all_of(text.begin(), text.end(), [&](char c) {
               return IsLetterOrDigit(c) || kMarks.find(c) != std::string_view::npos;
           });
}

bool IsLabel(std::string_view text)
{
    return !text.empty() && text.size() <= kLongestLabel && IsLetterOrDigit(text.front()) &&
           IsLetterOrDigit(text.back()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return IsLetterOrDigit(c) || c == '-'; });
}

// Whether each label between the dots satisfies the condition.
template <typename Condition>
bool IsEachPiece(std::string_view text, Condition condition)
{
    for (;;) {
        const std::size_t dot = text.find('.');
        if (!condition(text.substr(0, dot))) {
            return false;
        }
        if (dot == std::string_view::npos) {
            return true;
        }
        text.remove_prefix(dot + 1);
    }
}

// Without dots, and without the part from the first of the separators; the first character is never one.
std::string Mailbox(std::string_view address, std::string_view separators)
{
    const std::size_t at = address.find('@');
    std::string name(address.substr(0, std::min(address.find_first_of(separators, 1), at)));
    std::erase(name, '.');
    return name + std::string(address.substr(at));
}

} // namespace

bool IsHostName(std::string_view text)
{
    const std::size_t last = text.rfind('.');
    // A top-level domain begins with a letter, unlike the last part of an IPv4 address.
    return last != std::string_view::npos && last + 1 < text.size() && IsLetter(text[last + 1]) &&
           IsEachPiece(text, IsLabel);
}

std::optional<std::string> NormalisedMailAddress(std::string_view typed)
{
    const std::string_view text = Trimmed(typed, " \t\r\n");
    const std::size_t at = text.find('@');
    if (text.size() > kLongest || at == std::string_view::npos || at > kLongestLocalPart ||
        !IsEachPiece(text.substr(0, at), IsAtom) || !IsHostName(text.substr(at + 1))) {
        return std::nullopt;
    }
    std::string address(text);
    std::transform(address.begin(), address.end(), address.begin(), &ToLower);
    return address;
}

std::string MailboxForBlocks(std::string_view address)
{
    return Mailbox(address, "+");
}

std::string MailboxForLimits(std::string_view address)
{
    return Mailbox(address, "+-=");
}

std::string RegistrableDomainOf(std::string_view address)
{
    const std::string domain(address.substr(address.find('@') + 1));
    const char* const registrable = psl_registrable_domain(psl_builtin(), domain.c_str());
    return registrable != nullptr ? registrable : domain;
}

} // namespace beacond
