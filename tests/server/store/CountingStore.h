// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/SqliteStore.h"

#include <atomic>
#include <functional>

/// Counts the transactions of the wrapped store, and can delay them.
class CountingStore final : public beacond::Store
{
public:
    CountingStore(const std::string& path, std::atomic<int>& commits)
        : m_store(path)
        , m_commits(commits)
    {
    }

    void AddStarts(const std::vector<beacond::StartCount>& counts) override { m_store.AddStarts(counts); }
    std::vector<beacond::StartCount> Starts() const override { return m_store.Starts(); }
    std::int64_t AddStrip(const beacond::Strip& strip) override { return m_store.AddStrip(strip); }
    bool RemoveStrip(std::int64_t id) override { return m_store.RemoveStrip(id); }
    std::vector<beacond::Strip> Strips() const override { return m_store.Strips(); }
    void AddRelease(const beacond::Release& release) override { m_store.AddRelease(release); }
    bool RemoveRelease(std::string_view name, std::string_view sequence) override
    {
        return m_store.RemoveRelease(name, sequence);
    }
    std::vector<beacond::Release> Releases() const override { return m_store.Releases(); }
    beacond::SignupResult SignUp(const beacond::Signup& signup, const beacond::SignupLimits& limits) override
    {
        return m_store.SignUp(signup, limits);
    }
    void Withdraw(std::string_view code) override { m_store.Withdraw(code); }
    void DropOldSignups() override { m_store.DropOldSignups(); }
    beacond::Confirmation Confirm(std::string_view code, std::string_view pc) override
    {
        return m_store.Confirm(code, pc);
    }
    bool Forget(std::string_view index) override { return m_store.Forget(index); }
    bool IsTextDue(std::string_view pc, int prayer) const override { return m_store.IsTextDue(pc, prayer); }
    bool QueueText(std::string_view pc, int prayer, std::string_view time, std::string_view place) override
    {
        return m_store.QueueText(pc, prayer, time, place);
    }
    std::vector<beacond::OutboxRow> Outbox(std::size_t most) const override { return m_store.Outbox(most); }
    bool IsWrittenWith(std::string_view name, std::string_view check) override
    {
        return m_store.IsWrittenWith(name, check);
    }
    std::int64_t DataVersion() const override { return m_store.DataVersion(); }
    void TryToWrite() override { m_store.TryToWrite(); }
    void Begin() override { m_store.Begin(); }
    void End() override
    {
        beforeCommit();
        ++m_commits;
        m_store.End();
    }
    void Abandon() noexcept override { m_store.Abandon(); }

    std::function<void()> beforeCommit = [] {};

private:
    beacond::SqliteStore m_store;
    std::atomic<int>& m_commits;
};
