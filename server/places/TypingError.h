// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// The length in bytes of the first character of valid UTF-8; 0 for an empty text.
[[nodiscard]] std::size_t LetterLength(std::string_view text);

/// Whether `name` begins with `typed`, except for one typing error in `typed`: a wrong, missing or additional
/// letter, or two neighbouring letters swapped.
[[nodiscard]] bool BeginsWithOneError(std::string_view name, std::string_view typed);

/// The corrected texts if the error is in the first letter. Only ASCII letters are added or replaced.
[[nodiscard]] std::vector<std::string> VariantsOfFirstLetter(std::string_view typed);

} // namespace beacond
