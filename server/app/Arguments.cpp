// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Arguments.h"

#include "app/Service.h"

namespace beacond {

// Relative to the program, so that an installation can be moved, and two builds are identical.
std::filesystem::path FolderOfTables()
{
    std::error_code ignored;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    return program.parent_path().parent_path() / "share/dusk-beacon/places";
}

Settings SettingsOf(const Arguments& arguments)
{
    return arguments.config.empty() ? Settings() : ReadSettings(arguments.config);
}

SqliteStore OpenStore(const Arguments& arguments)
{
    return SqliteStore(SqlitePathInItsFolder(SettingsOf(arguments).store.url));
}

SqliteStore OpenStoreToRead(const Arguments& arguments)
{
    return SqliteStore::ToRead(SqlitePath(SettingsOf(arguments).store.url));
}

} // namespace beacond
