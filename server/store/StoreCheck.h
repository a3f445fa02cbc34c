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
    std::vector<std::string> problems; ///< lines that begin with the file's name
    std::map<std::string, std::string>
        hashes; ///< hashes of the keys that the store was written with, by key name
};

/// Checks an existing store file completely, without changing it.
[[nodiscard]] StoreCheck CheckStore(const std::string& path);

} // namespace beacond
