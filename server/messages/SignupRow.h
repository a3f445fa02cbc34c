// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Store.h"

#include <string>

namespace beacond {

struct Address;
struct Keys;
enum class Road;

/// The row of a new sign-up: its address is sealed, and hashed in each way by which it is found or limited.
[[nodiscard]] Signup SignupOf(const Keys& keys, const Address& address, Road road, std::string codeHash);

} // namespace beacond
