// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace beacond {

class Database;

/// The number of migrations that the file has gone through, 0 for an empty one. Throws StoreError if another
/// application or a newer version of the service has written it; changes nothing.
/// @param path for the error, here and below
[[nodiscard]] std::int64_t RequireOwnFile(Database& database, const std::string& path);

/// Takes a file as the store: an empty one gets the current schema, one of an older version what it lacks.
/// Throws StoreError, and leaves the file as it is, if another application or a newer version of the service
/// has written it.
void BringUpToDate(Database& database, const std::string& path);

/// Throws StoreError if the file is not a store with the current schema; changes nothing.
void RequireUpToDate(Database& database, const std::string& path);

/// Writes the version of the current schema, to be called for a file that has it.
void WriteVersion(Database& database);

} // namespace beacond
