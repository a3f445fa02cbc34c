// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace beacond {

struct Address;

/// An address as the operator sees it, who can recognise it but not copy it: "a...@example.org",
/// "+49...89", "https://ntfy.example.org/...".
[[nodiscard]] std::string MaskedAddress(const Address& address);

} // namespace beacond
