// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"
#include "store/SqliteStore.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace beacond {

/// The folder of the packed tables beside the program.
[[nodiscard]] std::filesystem::path FolderOfTables();

/// The values of the command line, for all commands.
struct Arguments
{
    std::string config;
    std::string tables = FolderOfTables();
    std::string out;
    std::vector<std::filesystem::path> dumps;
    std::string address;
    bool isActivated = false;
    bool isConnecting = false;
    bool isList = false;
    Strip strip;
    std::int64_t stripId = 0;
    Release release;
};

/// The defaults without a configuration file. Throws SettingsError.
[[nodiscard]] Settings SettingsOf(const Arguments& arguments);
/// Creates the store if it is missing. Throws StoreError.
[[nodiscard]] SqliteStore OpenStore(const Arguments& arguments);
/// Throws StoreError if the store is missing.
[[nodiscard]] SqliteStore OpenStoreToRead(const Arguments& arguments);

} // namespace beacond
