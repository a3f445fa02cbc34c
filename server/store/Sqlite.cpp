// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Sqlite.h"

#include "store/Store.h"

#include <sqlite3.h>

namespace beacond {

Statement::Statement(Database& database, sqlite3_stmt* statement)
    : m_database(database)
    , m_statement(statement)
{
}

Statement::~Statement()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

void Statement::Check(int result) const
{
    if (result != SQLITE_OK) {
        m_database.Fail();
    }
}

Statement& Statement::Bind(std::int64_t value)
{
    Check(sqlite3_bind_int64(m_statement, ++m_bound, value));
    return *this;
}

Statement& Statement::Bind(std::string_view text)
{
    Check(
        sqlite3_bind_text64(m_statement, ++m_bound, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::BindBytes(std::string_view bytes)
{
    Check(sqlite3_bind_blob64(m_statement, ++m_bound, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
    return *this;
}

bool Statement::Step()
{
    const int result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        m_database.Fail();
    }
    return result == SQLITE_ROW;
}

std::int64_t Statement::Integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

std::string Statement::Text(int column) const
{
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    const int length = sqlite3_column_bytes(m_statement, column);
    return bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(length));
}

Database::Database(const std::string& path, Access access)
    : m_path(path)
{
    // Open a read-only connection for writing too: otherwise SQLite leaves the files of its log behind.
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (access == Access::Write ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(path.c_str(), &m_handle, flags, nullptr) != SQLITE_OK) {
        const std::string reason = m_handle != nullptr ? sqlite3_errmsg(m_handle) : "out of memory";
        sqlite3_close(m_handle);
        throw StoreError(path + ": " + reason);
    }
    sqlite3_extended_result_codes(m_handle, 1);
    // Another process, such as a subcommand that adds a strip, holds the lock for milliseconds. The timeout
    // is shorter than the time limit of a call, so that the error of the call names the lock.
    constexpr int kBusyMilliseconds = 1000;
    sqlite3_busy_timeout(m_handle, kBusyMilliseconds);
    if (access == Access::Read) {
        sqlite3_exec(m_handle, "PRAGMA query_only = ON", nullptr, nullptr, nullptr);
    }
}

Database::~Database()
{
    for (const auto& [sql, statement] : m_statements) {
        sqlite3_finalize(statement);
    }
    sqlite3_close(m_handle);
}

Statement Database::Run(const char* sql)
{
    sqlite3_stmt*& statement = m_statements[sql];
    if (statement == nullptr &&
        sqlite3_prepare_v3(m_handle, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK) {
        Fail();
    }
    return {*this, statement};
}

void Database::Execute(const std::string& sql)
{
    if (sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        Fail();
    }
}

void Database::TryExecute(const char* sql) noexcept
{
    sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr);
}

void Database::BeginGroup()
{
    Execute("BEGIN IMMEDIATE");
    m_isInGroup = true;
}

void Database::EndGroup()
{
    Execute("COMMIT");
    m_isInGroup = false;
}

void Database::AbandonGroup() noexcept
{
    m_isInGroup = false;
    TryExecute("ROLLBACK");
}

bool Database::IsAutocommit() const
{
    return sqlite3_get_autocommit(m_handle) != 0;
}

std::int64_t Database::Changes() const
{
    return sqlite3_changes64(m_handle);
}

std::int64_t Database::LastRow() const
{
    return sqlite3_last_insert_rowid(m_handle);
}

void Database::Fail() const
{
    throw StoreError(m_path + ": " + sqlite3_errmsg(m_handle));
}

void Database::RequireItsPath() const
{
    int isMoved = 0;
    sqlite3_file_control(m_handle, nullptr, SQLITE_FCNTL_HAS_MOVED, &isMoved);
    if (isMoved != 0) {
        throw StoreError(m_path + ": moved or replaced while the service runs; start the service again");
    }
}

Transaction::Transaction(Database& database)
    : m_database(database)
{
    // Outside a transaction the statements would be stored even though the group has failed.
    if (m_database.IsInGroup() && m_database.IsAutocommit()) {
        throw StoreError("an error before this call has undone its transaction");
    }
    m_database.Execute(m_database.IsInGroup() ? "SAVEPOINT part" : "BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    // SQLite may already have rolled back by itself, for instance on a full disk.
    if (!m_isDone && !m_database.IsAutocommit()) {
        m_database.TryExecute(m_database.IsInGroup() ? "ROLLBACK TO part; RELEASE part" : "ROLLBACK");
    }
}

void Transaction::Commit()
{
    m_database.Execute(m_database.IsInGroup() ? "RELEASE part" : "COMMIT");
    m_isDone = true;
}

} // namespace beacond
