// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace beacond {

class Key;
struct Address;

/// The keyed hash by which the store finds a blocked address. All subaddresses of a mail address, and its
/// spellings with other dots, have the same one.
/// @param lookup the key of that name in Keys
[[nodiscard]] std::string BlockIndex(const Key& lookup, const Address& address);

} // namespace beacond
