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

/// One run of a prepared statement: bind in order, then step through its rows. Ready for the next run when it
/// ends.
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
    /// True while there is a row to read.
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

/// A SQLite file. Each statement is prepared once. Failures throw StoreError with the file's name. Waits a
/// second for a lock of another process.
class Database final
{
public:
    enum class Access {
        Write, ///< makes the file if it is missing
        Read
    };

    explicit Database(const std::string& path, Access access = Access::Write);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// @param sql a literal, by whose address its preparation is kept
    [[nodiscard]] Statement Run(const char* sql);
    /// Statements without results, one or several.
    void Execute(const std::string& sql);
    /// The same, with failures passed over.
    void TryExecute(const char* sql) noexcept;
    /// Joins the transactions until EndGroup or AbandonGroup into one.
    void BeginGroup();
    void EndGroup();
    void AbandonGroup() noexcept;
    [[nodiscard]] bool IsInGroup() const { return m_isInGroup; }
    /// Whether no transaction is open.
    [[nodiscard]] bool IsAutocommit() const;
    [[nodiscard]] std::int64_t Changes() const;
    [[nodiscard]] std::int64_t LastRow() const;
    [[noreturn]] void Fail() const;
    /// Throws if the file has been moved, removed or replaced since it was opened. Waits for nothing.
    void RequireItsPath() const;

private:
    std::string m_path;
    sqlite3* m_handle = nullptr;
    std::map<const char*, sqlite3_stmt*> m_statements;
    bool m_isInGroup = false;
};

/// The statements of one call: all or none of them happen. Alone it is a transaction, in a group a part of
/// it.
class Transaction final
{
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Commits; the destructor rolls back otherwise.
    void Commit();

private:
    Database& m_database;
    bool m_isDone = false;
};

} // namespace beacond
