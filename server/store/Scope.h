// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Sqlite.h"

namespace beacond {

/// The statements of one call: all or none of them happen. Alone it is a transaction, inside one a part of
/// it.
class Scope final
{
public:
    explicit Scope(Database& database)
        : m_database(database)
        , m_isOutermost(database.IsAutocommit())
    {
        m_database.Execute(m_isOutermost ? "BEGIN IMMEDIATE" : "SAVEPOINT scope");
    }
    ~Scope()
    {
        // SQLite has rolled back by itself after a full disk or the like.
        if (!m_isDone && !m_database.IsAutocommit()) {
            m_database.TryExecute(m_isOutermost ? "ROLLBACK" : "ROLLBACK TO scope; RELEASE scope");
        }
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    void Finish()
    {
        m_database.Execute(m_isOutermost ? "COMMIT" : "RELEASE scope");
        m_isDone = true;
    }

private:
    Database& m_database;
    bool m_isOutermost;
    bool m_isDone = false;
};

} // namespace beacond
