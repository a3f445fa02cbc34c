// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The incoming messages of SqliteStore.
#include "store/SqliteStore.h"

namespace beacond {

namespace {

constexpr std::int64_t kDay = 24L * 3600;
constexpr std::int64_t kKept = 3 * kDay;
constexpr std::int64_t kMostBegun = 3;

} // namespace

IncomingState SqliteStore::BeginIncoming(std::string_view message, std::int64_t lease)
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    {
        Statement known = m_database.Run("SELECT is_done, begun, begun_at FROM incoming WHERE id = ?");
        if (known.BindBytes(message).Step()) {
            if (known.Integer(0) != 0) {
                return IncomingState::Done;
            }
            if (known.Integer(1) >= kMostBegun) {
                return IncomingState::Abandoned;
            }
            // A lease that begins in the future is one of a wrong clock.
            const std::int64_t age = now - known.Integer(2);
            if (known.Integer(1) > 0 && age >= 0 && age < lease) {
                return IncomingState::Busy;
            }
        }
    }
    m_database
        .Run("INSERT INTO incoming (id, first_at, begun_at, begun, is_done) VALUES (?1, ?2, ?2, 1, 0) "
             "ON CONFLICT (id) DO UPDATE SET begun = begun + 1, begun_at = excluded.begun_at")
        .BindBytes(message)
        .Bind(now)
        .Step();
    transaction.Commit();
    return IncomingState::Begun;
}

void SqliteStore::EndIncoming(std::string_view message, IncomingKept kept)
{
    Transaction transaction(m_database);
    m_database.Run("UPDATE incoming SET is_done = 1, is_kept = ?2 WHERE id = ?1")
        .BindBytes(message)
        .Bind(std::int64_t{kept == IncomingKept::Always})
        .Step();
    transaction.Commit();
}

void SqliteStore::ReturnIncoming(std::string_view message)
{
    Transaction transaction(m_database);
    // The lease ends with the attempt.
    m_database.Run("UPDATE incoming SET begun = MAX(begun - 1, 0), begun_at = 0 WHERE id = ? AND is_done = 0")
        .BindBytes(message)
        .Step();
    transaction.Commit();
}

void SqliteStore::DropOldIncoming()
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM incoming WHERE is_kept = 0 AND (first_at < ? OR first_at > ?)")
        .Bind(now - kKept)
        .Bind(now + kDay)
        .Step();
    transaction.Commit();
}

bool SqliteStore::Stop(std::string_view addressIndex)
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    bool hadAny = false;
    {
        Statement valid = m_database.Run(
            "SELECT EXISTS (SELECT 1 FROM device WHERE address_index = ?1) OR EXISTS "
            "(SELECT 1 FROM signup WHERE address_index = ?1 AND used_by IS NULL AND expires_at >= ?2)");
        valid.BindBytes(addressIndex).Bind(now).Step();
        hadAny = valid.Integer(0) != 0;
    }
    m_database.Run("DELETE FROM device WHERE address_index = ?").BindBytes(addressIndex).Step();
    // A repeated confirmation would create the device again: the code must become unknown, in a unique
    // column.
    m_database
        .Run("UPDATE signup SET sealed_address = NULL, code_hash = CAST('stopped ' || id AS BLOB), "
             "expires_at = 0, consent_words = '' WHERE address_index = ?")
        .BindBytes(addressIndex)
        .Step();
    transaction.Commit();
    return hadAny;
}

} // namespace beacond
