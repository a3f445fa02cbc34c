// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

class Key;

/// The ways to a device. Each has addresses of its own form.
enum class AddressKind {
    Mail,
    Sms, ///< a phone number
    Ntfy ///< a topic on an ntfy server
};

/// "mail", "sms" or "ntfy": the name in the store, in the configuration and in the metrics.
[[nodiscard]] std::string_view NameOf(AddressKind kind);

/// An address in its normalised form: two spellings of one address have equal texts. Free of white space,
/// control characters and quotation marks.
struct Address
{
    AddressKind kind = AddressKind::Mail;
    std::string text;

    bool operator==(const Address&) const = default;
};

/// A phone number in the form of E.164, "+" and 8 to 15 digits. Accepts "00" for "+", and spaces, hyphens and
/// dots between the digits. Nothing for a number without its country, which could be any country's.
[[nodiscard]] std::optional<std::string> NormalisedPhoneNumber(std::string_view typed);

/// The https address of a topic, "https://ntfy.example.org/topic", with the server in lower case. Nothing for
/// another scheme, a server without a dot, user information, a query, or further parts of a path.
[[nodiscard]] std::optional<std::string> NormalisedNtfyTopic(std::string_view typed);

/// An address of any kind, recognised by its form. Nothing if it is invalid.
[[nodiscard]] std::optional<Address> ParseAddress(std::string_view typed);

/// The keyed hash by which the store finds the data of an address.
[[nodiscard]] std::string AddressIndex(const Key& index, const Address& address);

} // namespace beacond
