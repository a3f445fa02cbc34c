// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <string>

namespace beacond {

class Key;
struct Address;
struct Keys;
enum class Road;

/// The addresses that count together in a limit beside that of the single address: those of a mail domain, or
/// the phone numbers that differ in their last four digits, which one operator can own. Empty for topics.
[[nodiscard]] std::string GroupIndexOf(const Key& index, const Address& address);

/// The row of a new sign-up: its address is sealed, and hashed in each way by which it is found or limited.
[[nodiscard]] Signup SignupOf(const Keys& keys, const Address& address, Road road, std::string codeHash);

} // namespace beacond
