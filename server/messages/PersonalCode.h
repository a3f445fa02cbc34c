// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// A new personal code: 16 random digits in groups of four, "1234 5678 9012 3456". The confirmation does not
/// check the device ID, so that the code alone must be unique and impossible to guess.
[[nodiscard]] std::string MakePersonalCode();

/// The 16 digits of a typed code: accepts digits of any script, and ignores spaces and hyphens. Nothing if
/// there are other characters or another number of digits.
/// @param typed UTF-8
[[nodiscard]] std::optional<std::string> DigitsOfPersonalCode(std::string_view typed);

} // namespace beacond
