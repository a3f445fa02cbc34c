// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Sqlite.h"
#include "store/Store.h"

#include <functional>

namespace beacond {

/// The store in one SQLite file: write-ahead log, a full sync at each commit.
class SqliteStore : public Store
{
public:
    /// Seconds since 1970.
    using Clock = std::function<std::int64_t()>;

    /// Opens or creates the file and migrates it to the current schema. Throws StoreError on failure, or if
    /// another application or a newer version of the service has written the file.
    explicit SqliteStore(const std::string& path);
    /// @param now the system's clock, in seconds since 1970
    /// @param elapsed a clock that only goes on; null for @p now
    SqliteStore(const std::string& path, Clock now, Clock elapsed = nullptr);
    /// Opens the store for reading only. Throws StoreError if the file is missing, or has another schema
    /// version.
    [[nodiscard]] static SqliteStore ToRead(const std::string& path);

    void AddStarts(const std::vector<StartCount>& counts) override;
    [[nodiscard]] std::vector<StartCount> Starts() const override;
    std::int64_t AddStrip(const Strip& strip) override;
    bool RemoveStrip(std::int64_t id) override;
    [[nodiscard]] std::vector<Strip> Strips() const override;
    void AddRelease(const Release& release) override;
    bool RemoveRelease(std::string_view name, std::string_view sequence) override;
    [[nodiscard]] std::vector<Release> Releases() const override;
    [[nodiscard]] SignupResult SignUp(const Signup& signup, const SignupLimits& limits) override;
    void Withdraw(std::string_view codeHash) override;
    [[nodiscard]] Confirmation Confirm(std::string_view codeHash, std::string_view installation) override;
    void DropOldSignups() override;
    bool Forget(std::string_view addressIndex) override;
    [[nodiscard]] IncomingState BeginIncoming(std::string_view message, std::int64_t lease) override;
    void EndIncoming(std::string_view message, IncomingKept kept) override;
    void ReturnIncoming(std::string_view message) override;
    void DropOldIncoming() override;
    bool Stop(std::string_view addressIndex) override;
    [[nodiscard]] PersonalData DataOf(std::string_view addressIndex) const override;
    bool Block(const BlockedAddress& blocked, std::string_view addressIndex) override;
    bool Unblock(std::string_view blockIndex) override;
    [[nodiscard]] std::vector<BlockedAddress> BlockedAddresses() const override;
    std::int64_t DropSilentDevices() override;
    void ReplaceAddresses(const std::function<StoredAddress(const StoredAddress&)>& replace,
                          const std::map<std::string, std::string>& keyChecks) override;
    void ClearDeleted() override;
    [[nodiscard]] std::string KeyCheck(std::string_view keyName) const override;
    [[nodiscard]] bool IsTextDue(std::string_view installation, int prayer) const override;
    bool QueueText(std::string_view installation, int prayer, std::string_view time,
                   std::string_view place) override;
    [[nodiscard]] std::vector<OutboxRow> Outbox(std::size_t most) const override;
    [[nodiscard]] bool IsTextWaiting(std::string_view kind) const override;
    [[nodiscard]] Lease LeaseTexts(const LeaseTerms& terms) override;
    bool BeginSending(std::int64_t text, std::int64_t fence) override;
    bool EndSending(std::int64_t text, std::int64_t fence, TextEnd end, std::int64_t retryAfter) override;
    std::int64_t DropOldTexts() override;
    [[nodiscard]] OutboxState StateOfOutbox() const override;
    [[nodiscard]] std::vector<WaitingText> WaitingTexts(std::size_t most) const override;
    void GiveBackSpend(std::int64_t amount) override;
    [[nodiscard]] bool TrySpend(std::int64_t amount, std::int64_t perDay) override;
    [[nodiscard]] bool IsWrittenWith(std::string_view keyName, std::string_view check) override;
    [[nodiscard]] std::int64_t DataVersion() const override;
    void TryToWrite() override;
    void Begin() override;
    void End() override;
    void Abandon() noexcept override;

private:
    SqliteStore(const std::string& path, Database::Access access);

    std::string m_path;
    /// Mutable: reading prepares statements.
    mutable Database m_database;
    /// The time for ages and leases: it begins with the system's clock, and then no step of that clock
    /// changes it.
    [[nodiscard]] std::int64_t SteadyNow() const { return m_elapsed() + m_begin; }

    Clock m_now;
    Clock m_elapsed;
    std::int64_t m_begin; ///< the system's clock when the other one was at 0
    bool m_isClearDue = false;
};

} // namespace beacond
