// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// A new personal code: 16 random digits in fours, "1234 5678 9012 3456". The device ID is not asked for when
/// it is confirmed, so the code alone is unique and can't be guessed.
[[nodiscard]] std::string MakePersonalCode();

/// The 16 digits of a code as somebody typed it: digits of any script, spaces and hyphens between them
/// ignored. Nothing if there are other characters or another number of digits.
/// @param typed UTF-8
[[nodiscard]] std::optional<std::string> DigitsOfPersonalCode(std::string_view typed);

} // namespace beacond
