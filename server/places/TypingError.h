// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The bytes of the first letter of valid UTF-8; 0 of nothing.
[[nodiscard]] std::size_t LetterLength(std::string_view text);

/// Whether `name` begins with `typed` but for one letter that is wrong, missing or too much, or two
/// neighbours that are swapped.
[[nodiscard]] bool BeginsWithOneError(std::string_view name, std::string_view typed);

/// The texts that may have been meant if the error is in the first letter. Letters to add or to replace are
/// those of ASCII.
[[nodiscard]] std::vector<std::string> VariantsOfFirstLetter(std::string_view typed);

} // namespace beacond
