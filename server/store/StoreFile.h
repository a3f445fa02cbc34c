// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace beacond {

class Database;

/// The number of migrations applied to the file, 0 for an empty file. Throws StoreError if another
/// application or a newer version of the service has written it; changes nothing.
/// @param path named in errors, here and below
[[nodiscard]] std::int64_t RequireOwnFile(Database& database, const std::string& path);

/// Migrates an empty or older file to the current schema. Throws StoreError, and leaves the file as it is, if
/// another application or a newer version of the service has written it.
void UpdateSchema(Database& database, const std::string& path);

/// Throws StoreError if the file is not a store with the current schema; changes nothing.
void RequireCurrentSchema(Database& database, const std::string& path);

/// Writes the version of the current schema into a file that has this schema.
void WriteVersion(Database& database);

} // namespace beacond
