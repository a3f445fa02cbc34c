// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// A mail address as messages go to it and as it is recognised: white space around it dropped, letters
/// lower-case. Nothing for a text that is not a valid mail address, or has a rarer form than sign-ups need
/// (quoted or non-ASCII local parts, address literals, a domain without a dot).
[[nodiscard]] std::optional<std::string> NormalisedMailAddress(std::string_view typed);

/// A normalised address without the subaddress, from "+" to "@", which many servers deliver to the same
/// mailbox. For limits alone: on other servers it is another person's address.
[[nodiscard]] std::string WithoutSubaddress(std::string_view address);

/// The domain of a normalised address that its owner has registered, "example.co.uk" for
/// "a@mail.example.co.uk", by the Public Suffix List; the whole domain where the list knows none.
[[nodiscard]] std::string RegistrableDomainOf(std::string_view address);

} // namespace beacond
