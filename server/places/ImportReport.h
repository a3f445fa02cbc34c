// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace beacond {

/// The outcome of an import, for the operator.
struct ImportReport
{
    std::size_t places = 0;
    std::size_t names = 0;                      ///< folded names and words of names that a search finds
    std::size_t codes = 0;                      ///< postal codes
    std::size_t scopes = 0;                     ///< rows of the list of countries and states
    std::map<std::string, std::size_t> skipped; ///< skipped rows, by reason

    void Skip(const char* reason) { ++skipped[reason]; }
};

} // namespace beacond
