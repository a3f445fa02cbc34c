// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreFile.h"

#include "store/Migrations.h"
#include "store/Sqlite.h"
#include "store/Store.h"

namespace beacond {

namespace {

// "DuBe" in ASCII, in the header of the file.
constexpr std::int64_t kApplication = 0x44754265;

std::int64_t Number(Database& database, const char* question)
{
    Statement answer = database.Run(question);
    answer.Step();
    return answer.Integer(0);
}

bool IsMarked(Database& database)
{
    return Number(database, "PRAGMA application_id") == kApplication;
}

void Migrate(Database& database, const std::string& path)
{
    Transaction transaction(database);
    // Another process may have migrated the file meanwhile.
    const auto version = static_cast<std::size_t>(RequireOwnFile(database, path));
    for (std::size_t step = version; step < kSqliteMigrations.size(); ++step) {
        database.Execute(std::string(kSqliteMigrations[step]));
    }
    database.Execute("PRAGMA application_id = " + std::to_string(kApplication));
    WriteVersion(database);
    transaction.Commit();
}

} // namespace

std::int64_t RequireOwnFile(Database& database, const std::string& path)
{
    // The first version of the service wrote no application id.
    const char* const kIsForeign = "SELECT count(*) > 0 AND total(name = 'key_check') = 0 FROM sqlite_schema";
    if (!IsMarked(database) &&
        (Number(database, "PRAGMA application_id") != 0 || Number(database, kIsForeign) != 0)) {
        throw StoreError(path + ": written by another application");
    }
    const std::int64_t version = Number(database, "PRAGMA user_version");
    if (version < 0 || version > std::ssize(kSqliteMigrations)) {
        throw StoreError(path + ": written by a newer version of the service (tables " +
                         std::to_string(version) + ", known up to " +
                         std::to_string(kSqliteMigrations.size()) + ")");
    }
    return version;
}

void UpdateSchema(Database& database, const std::string& path)
{
    (void)RequireOwnFile(database, path);
    // Deleted addresses must not remain in the file.
    database.Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA secure_delete = ON");
    if (!IsMarked(database) || RequireOwnFile(database, path) != std::ssize(kSqliteMigrations)) {
        // A migration that replaces a table drops it, which would delete the rows that refer to it.
        database.Execute("PRAGMA foreign_keys = OFF");
        Migrate(database, path);
    }
    database.Execute("PRAGMA foreign_keys = ON");
}

void RequireCurrentSchema(Database& database, const std::string& path)
{
    if (RequireOwnFile(database, path) != std::ssize(kSqliteMigrations)) {
        throw StoreError(path +
                         ": written by an older version of the service, which brings it up to date when "
                         "it starts");
    }
}

void WriteVersion(Database& database)
{
    database.Execute("PRAGMA user_version = " + std::to_string(kSqliteMigrations.size()));
}

} // namespace beacond
