// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace beacond {

class Key;
struct Address;
struct PersonalData;

/// All that is kept of an address as JSON, for the person whom it concerns. Times are UTC, hashes
/// hexadecimal. Throws KeyError if an address can't be read.
/// @param blockedSince seconds since 1970; nothing for an address that is not blocked
[[nodiscard]] std::string PersonalDataText(const Address& address, const PersonalData& data,
                                           std::optional<std::int64_t> blockedSince, const Key& addressKey);

/// "2027-03-10T05:07:00Z"
/// @param seconds since 1970
[[nodiscard]] std::string TimeText(std::int64_t seconds);
/// Two digits for each byte.
[[nodiscard]] std::string HexText(const std::string& bytes);

} // namespace beacond
