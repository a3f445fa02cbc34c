// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// The normalised address of the value of a header From. Nothing unless it is exactly one address, perhaps
/// with a name: groups, several addresses, routes and unfinished quotations are not read.
[[nodiscard]] std::optional<std::string> FromAddress(std::string_view value);

} // namespace beacond
