// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// A mail address in the form that messages and comparisons use: without surrounding white space, in lower
/// case. Nothing for an invalid address, or for a rare form that sign-ups do not need (quoted or non-ASCII
/// local parts, address literals, a domain without a dot).
[[nodiscard]] std::optional<std::string> NormalisedMailAddress(std::string_view typed);

/// Whether @p text is the name of a host or domain with at least one dot, in ASCII; no numeric address.
[[nodiscard]] bool IsHostName(std::string_view text);

/// A normalised address without the dots of its name and without the subaddress, from "+" to "@", since some
/// servers deliver all these to the same mailbox. Only for blocks: on other servers the result can be another
/// person's address.
[[nodiscard]] std::string MailboxForBlocks(std::string_view address);

/// The same without the part from "-" or "=" too, which other servers use in place of "+". Only for limits,
/// since the addresses of many persons contain "-".
[[nodiscard]] std::string MailboxForLimits(std::string_view address);

/// The registered domain of a normalised address, "example.co.uk" for "a@mail.example.co.uk", by the Public
/// Suffix List; the whole domain if the list has no entry.
[[nodiscard]] std::string RegistrableDomainOf(std::string_view address);

} // namespace beacond
