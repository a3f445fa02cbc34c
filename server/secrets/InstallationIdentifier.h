// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace beacond {

class Key;

/// A new identifier of an installation: 32 characters of base64url over the version of the key (1 byte), the
/// day (2 bytes, days since 1970, lowest first), 104 random bits, and 64 bits of a keyed hash of these. It
/// needs no row in a store: its hash proves that the service has issued it.
/// @param day days since 1970-01-01, 0 to 65535
[[nodiscard]] std::string MakeInstallationIdentifier(const Key& key, std::int32_t day);

/// The day on which this service issued the identifier; nothing for an identifier that it did not issue.
[[nodiscard]] std::optional<std::int32_t> DayOfInstallationIdentifier(const Key& key,
                                                                      std::string_view identifier);

} // namespace beacond
