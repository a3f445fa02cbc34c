// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Address.h"

#include "messages/MailAddress.h"
#include "secrets/Keys.h"
#include "support/Ascii.h"

#include <algorithm>

namespace beacond {

namespace {

constexpr std::string_view kSpace = " \t\r\n";
// ITU-T E.164: at most 15 digits with those of the country. No country has numbers of fewer than 8.
constexpr std::size_t kFewestDigits = 8;
constexpr std::size_t kMostDigits = 15;
// The limit of the ntfy server.
constexpr std::size_t kLongestTopic = 64;

// Digits, or nothing where the port is missing, with the colon before it.
bool IsPort(std::string_view text)
{
    return text.empty() || (text.size() >= 2 && text.size() <= 6 && text[0] == ':' && text[1] != '0' &&
                            std::all_of(text.begin() + 1, text.end(), &IsDigit));
}

bool IsTopic(std::string_view text)
{
    return !text.empty() && text.size() <= kLongestTopic && std::all_of(text.begin(), text.end(), [](char c) {
        return IsLetterOrDigit(c) || c == '-' || c == '_';
    });
}

} // namespace

std::string_view NameOf(AddressKind kind)
{
    switch (kind) {
    case AddressKind::Mail:
        break;
    case AddressKind::Sms:
        return "sms";
    case AddressKind::Ntfy:
        return "ntfy";
    }
    return "mail";
}

std::optional<std::string> NormalisedPhoneNumber(std::string_view typed)
{
    std::string_view text = Trimmed(typed, kSpace);
    if (!text.starts_with('+') && !text.starts_with("00")) {
        return std::nullopt;
    }
    text.remove_prefix(text.starts_with('+') ? 1 : 2);
    std::string number = "+";
    for (const char c : text) {
        if (IsDigit(c)) {
            number += c;
        } else if (c != ' ' && c != '-' && c != '.') {
            return std::nullopt;
        }
    }
    const std::size_t digits = number.size() - 1;
    const bool isNumber = digits >= kFewestDigits && digits <= kMostDigits && number[1] != '0';
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<std::string> NormalisedNtfyTopic(std::string_view typed)
{
    constexpr std::string_view kScheme = "https://";
    std::string_view text = Trimmed(typed, kSpace);
    std::string topic(text.substr(0, kScheme.size()));
    std::transform(topic.begin(), topic.end(), topic.begin(), &ToLower);
    if (topic != kScheme) {
        return std::nullopt;
    }
    text.remove_prefix(kScheme.size());
    const std::size_t slash = std::min(text.find('/'), text.size());
    const std::string_view server = text.substr(0, slash);
    const std::size_t colon = std::min(server.find(':'), server.size());
    const std::string_view name = text.substr(slash).substr(slash < text.size() ? 1 : 0);
    if (!IsHostName(server.substr(0, colon)) || !IsPort(server.substr(colon)) || !IsTopic(name)) {
        return std::nullopt;
    }
    std::transform(server.begin(), server.end(), std::back_inserter(topic), &ToLower);
    // The name is a secret between sender and reader: its case counts.
    return topic + '/' + std::string(name);
}

std::optional<Address> ParseAddress(std::string_view typed)
{
    const bool isTopic = typed.find("://") != std::string_view::npos;
    const bool isMail = !isTopic && typed.find('@') != std::string_view::npos;
    const AddressKind kind = isTopic ? AddressKind::Ntfy : isMail ? AddressKind::Mail : AddressKind::Sms;
    std::optional<std::string> text = isTopic  ? NormalisedNtfyTopic(typed)
                                      : isMail ? NormalisedMailAddress(typed)
                                               : NormalisedPhoneNumber(typed);
    return text ? std::optional(Address{kind, std::move(*text)}) : std::nullopt;
}

std::string AddressIndex(const Key& index, const Address& address)
{
    return index.Hash(std::string(NameOf(address.kind)) + " address", address.text);
}

} // namespace beacond
