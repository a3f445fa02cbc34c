// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <string>
#include <vector>

namespace beacond {

/// The findings about a store file.
struct StoreCheck
{
    std::vector<std::string> problems;         ///< each a line that begins with the file's name
    std::map<std::string, std::string> hashes; ///< of the keys that it was written with, by their names
};

/// Reads a whole store file that exists, and changes nothing in it.
[[nodiscard]] StoreCheck CheckStore(const std::string& path);

} // namespace beacond
