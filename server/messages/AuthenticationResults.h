// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// One value of the header Authentication-Results, RFC 8601.
struct AuthenticationResults
{
    std::string server;                     ///< the authserv-id in lower case
    std::optional<std::string> dmarcDomain; ///< the authenticated domain, in lower case, if DMARC passed
};

/// Nothing if the value is malformed. A value with several results of DMARC has passed only if each has
/// passed, for the same domain.
[[nodiscard]] std::optional<AuthenticationResults> ReadAuthenticationResults(std::string_view value);

} // namespace beacond
