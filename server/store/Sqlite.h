// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace beacond {

class Database;

/// One run of a prepared statement: bind the values in order, then step through the rows. The destructor
/// resets the statement for its next run.
class Statement final
{
public:
    Statement(Database& database, sqlite3_stmt* statement);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& Bind(std::int64_t value);
    Statement& Bind(std::string_view text);
    Statement& BindBytes(std::string_view bytes);
    /// Returns true while there is a row to read.
    bool Step();

    [[nodiscard]] std::int64_t Integer(int column) const;
    /// Text or bytes.
    [[nodiscard]] std::string Text(int column) const;

private:
    void Check(int result) const;

    Database& m_database;
    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

/// An SQLite file. Each statement is prepared once. Failures throw StoreError with the file's name. Waits at
/// most one second for a lock of another process.
class Database final
{
public:
    enum class Access {
        Write, ///< creates the file if it is missing
        Read
    };

    explicit Database(const std::string& path, Access access = Access::Write);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// @param sql a literal: its address is the key of the prepared statement
    [[nodiscard]] Statement Run(const char* sql);
    /// Runs one or several statements without results.
    void Execute(const std::string& sql);
    /// The same, but ignores failures.
    void TryExecute(const char* sql) noexcept;
    /// Combines the following transactions into one, until EndGroup or AbandonGroup.
    void BeginGroup();
    void EndGroup();
    void AbandonGroup() noexcept;
    [[nodiscard]] bool IsInGroup() const { return m_isInGroup; }
    /// Whether no transaction is open.
    [[nodiscard]] bool IsAutocommit() const;
    [[nodiscard]] std::int64_t Changes() const;
    [[nodiscard]] std::int64_t LastRow() const;
    [[noreturn]] void Fail() const;
    /// Throws if the file has been moved, removed or replaced since it was opened. Does not wait for a lock.
    void RequireItsPath() const;

private:
    std::string m_path;
    sqlite3* m_handle = nullptr;
    std::map<const char*, sqlite3_stmt*> m_statements;
    bool m_isInGroup = false;
};

/// The statements of one call: all of them take effect, or none. A transaction of its own, or a savepoint
/// within a group.
class Transaction final
{
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Commits. Without it the destructor rolls back.
    void Commit();

private:
    Database& m_database;
    bool m_isDone = false;
};

} // namespace beacond
