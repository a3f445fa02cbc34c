// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/TypingError.h"

#include <algorithm>

namespace beacond {

std::size_t LetterLength(std::string_view text)
{
    std::size_t length = std::min<std::size_t>(text.size(), 1);
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        ++length;
    return length;
}

bool BeginsWithOneError(std::string_view name, std::string_view typed)
{
    while (!typed.empty() && !name.empty()) {
        const std::size_t letter = LetterLength(typed);
        if (name.substr(0, letter) != typed.substr(0, letter))
            break;
        name.remove_prefix(letter);
        typed.remove_prefix(letter);
    }
    if (typed.empty())
        return true;
    const std::string_view nextTyped = typed.substr(LetterLength(typed));
    const std::string_view nextName = name.substr(LetterLength(name));
    if (name.starts_with(nextTyped)) // an additional letter
        return true;
    if (name.empty())
        return false;
    if (nextName.starts_with(nextTyped) || nextName.starts_with(typed)) // a wrong or a missing letter
        return true;
    const std::string_view first = typed.substr(0, LetterLength(typed));
    const std::string_view second = nextTyped.substr(0, LetterLength(nextTyped));
    return !second.empty() && name.starts_with(second) && nextName.starts_with(first) &&
           nextName.substr(first.size()).starts_with(nextTyped.substr(second.size()));
}

std::vector<std::string> VariantsOfFirstLetter(std::string_view typed)
{
    const std::string_view first = typed.substr(0, LetterLength(typed));
    const std::string_view rest = typed.substr(first.size());
    const std::string_view second = rest.substr(0, LetterLength(rest));
    std::vector<std::string> variants;
    variants.emplace_back(rest);
    variants.push_back(std::string(second).append(first).append(rest.substr(second.size())));
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        variants.push_back(std::string(1, letter).append(rest));
        variants.push_back(std::string(1, letter).append(typed));
    }
    return variants;
}

} // namespace beacond
