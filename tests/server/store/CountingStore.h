// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/SqliteStore.h"

#include <atomic>
#include <functional>

/// Counts the transactions, and can delay them or let them fail.
class CountingStore final : public beacond::SqliteStore
{
public:
    CountingStore(const std::string& path, std::atomic<int>& commits)
        : SqliteStore(path)
        , m_commits(commits)
    {
    }

    void End() override
    {
        beforeCommit();
        ++m_commits;
        SqliteStore::End();
    }

    std::function<void()> beforeCommit = [] {};

private:
    std::atomic<int>& m_commits;
};
