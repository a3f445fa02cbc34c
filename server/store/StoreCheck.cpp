// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreCheck.h"

#include "store/Sqlite.h"
#include "store/Store.h"
#include "store/StoreFile.h"

namespace beacond {

namespace {

void ReadHashes(Database& database, StoreCheck& check)
{
    Statement rows = database.Run("SELECT name, hash FROM key_check");
    while (rows.Step()) {
        check.hashes[rows.Text(0)] = rows.Text(1);
    }
}

void FindDamage(Database& database, const std::string& path, StoreCheck& check)
{
    Statement damages = database.Run("PRAGMA integrity_check(1)");
    if (damages.Step() && damages.Text(0) != "ok") {
        const std::string damage = damages.Text(0);
        check.problems.push_back(path + ": damaged: " + damage.substr(damage.rfind('\n') + 1));
    }
}

} // namespace

StoreCheck CheckStore(const std::string& path)
{
    StoreCheck check;
    try {
        Database database(path, Database::Access::Read);
        const std::int64_t version = RequireOwnFile(database, path);
        FindDamage(database, path, check);
        if (version > 0 && check.problems.empty()) {
            ReadHashes(database, check);
        }
    } catch (const StoreError& error) {
        check.problems.emplace_back(error.what());
    }
    return check;
}

} // namespace beacond
