// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// A name in the form that a search compares.
struct FoldedName
{
    std::string text;               ///< UTF-8, letters and digits only
    std::vector<std::size_t> words; ///< offsets in `text` at which a second or later word begins, ascending
};

/// Folds letter case, accents and spelling variants of one letter, and drops all other characters than
/// letters and digits: "Saint-Denis", "saint denis" and "SAINTDENIS" are equal. Vowel signs of Indic scripts
/// stay: names differ only by them. Invalid UTF-8 is dropped.
[[nodiscard]] FoldedName FoldName(std::string_view name);

/// The text of FoldName alone.
[[nodiscard]] std::string Fold(std::string_view name);

/// The number of code points of valid UTF-8.
[[nodiscard]] std::size_t CountLetters(std::string_view text);

} // namespace beacond
