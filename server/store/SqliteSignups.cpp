// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The sign-ups and devices of SqliteStore.
#include "store/SqliteStore.h"

#include <optional>

namespace beacond {

namespace {

// The window of the limits; also the time in which a used code confirms the same installation again.
constexpr std::int64_t kDay = 24L * 3600;

struct StoredSignup
{
    std::int64_t id = 0;
    std::int64_t device = 0;
    std::int64_t expiresAt = 0;
    std::string usedBy; ///< empty while the code is unused
    std::int64_t usedAt = 0;
};

// The groups of addresses whose sign-ups count together.
const std::string& LimitIndexOf(const Signup& signup)
{
    return signup.limitIndex.empty() ? signup.addressIndex : signup.limitIndex;
}

SignupResult::Limit ExceededLimit(Database& database, const Signup& signup, const SignupLimits& limits,
                                  std::int64_t now)
{
    using Limit = SignupResult::Limit;
    if (database.Run("SELECT 1 FROM blocked WHERE block_index = ?").BindBytes(signup.blockIndex).Step()) {
        return Limit::Blocked;
    }
    // Ignore sign-ups dated in the future: the clock was wrong.
    const auto isReached = [now](Statement& count, std::int64_t most) {
        count.Bind(now - kDay).Bind(now).Step();
        return count.Integer(0) >= most;
    };
    Statement all = database.Run("SELECT COUNT(*) FROM signup WHERE consent_at > ? AND consent_at <= ?");
    if (isReached(all, limits.inAll)) {
        return Limit::InAll;
    }
    Statement ofDomain = database.Run(
        "SELECT COUNT(*) FROM signup WHERE domain_index = ? AND consent_at > ? AND consent_at <= ?");
    if (!signup.domainIndex.empty() && isReached(ofDomain.BindBytes(signup.domainIndex), limits.ofADomain)) {
        return Limit::Domain;
    }
    Statement ofAddress = database.Run(
        "SELECT COUNT(*) FROM signup WHERE limit_index = ? AND consent_at > ? AND consent_at <= ?");
    const bool isRefused = isReached(ofAddress.BindBytes(LimitIndexOf(signup)), limits.ofAnAddress);
    return isRefused ? Limit::Address : Limit::None;
}

// Whether a new address would exceed the devices of its kind. The addresses of valid codes count as devices,
// since each of them can still be confirmed.
bool IsFull(Database& database, const Signup& signup, std::int64_t mostDevices, std::int64_t now)
{
    Statement devices = database.Run(
        "SELECT (SELECT COUNT(*) FROM device WHERE kind = ?1) + "
        "(SELECT COUNT(DISTINCT address_index) FROM signup WHERE kind = ?1 AND address_index <> ?2 "
        "AND sealed_address IS NOT NULL AND used_by IS NULL AND expires_at BETWEEN ?3 AND ?4 AND NOT EXISTS "
        "(SELECT 1 FROM device WHERE device.address_index = signup.address_index))");
    devices.Bind(signup.kind).BindBytes(signup.addressIndex).Bind(now).Bind(now + kDay).Step();
    return devices.Integer(0) >= mostDevices;
}

bool HasDevice(Database& database, std::string_view addressIndex)
{
    return database.Run("SELECT 1 FROM device WHERE address_index = ?").BindBytes(addressIndex).Step();
}

// The number of the device of an address; 0 for an address with neither a device nor a sign-up. All pending
// codes of one address create the same device.
std::int64_t DeviceOfAddress(Database& database, std::string_view addressIndex)
{
    Statement device = database.Run("SELECT COALESCE((SELECT id FROM device WHERE address_index = ?1), "
                                    "(SELECT device FROM signup WHERE address_index = ?1 LIMIT 1), 0)");
    device.BindBytes(addressIndex).Step();
    return device.Integer(0);
}

std::optional<StoredSignup> SignupOfCode(Database& database, std::string_view codeHash)
{
    Statement signup =
        database.Run("SELECT id, device, expires_at, used_by, used_at FROM signup WHERE code_hash = ?");
    if (!signup.BindBytes(codeHash).Step()) {
        return std::nullopt;
    }
    return StoredSignup{signup.Integer(0), signup.Integer(1), signup.Integer(2), signup.Text(3),
                        signup.Integer(4)};
}

// Codes of one address may be confirmed in any order: keep the newest consent.
void MakeOrRenewDevice(Database& database, std::int64_t signup, std::int64_t now)
{
    database
        .Run("INSERT INTO device (id, kind, sealed_address, address_index, consent_at, consent_road, "
             "consent_words) "
             "SELECT device, kind, sealed_address, address_index, consent_at, consent_road, consent_words "
             "FROM signup WHERE id = ? "
             "ON CONFLICT DO UPDATE SET kind = excluded.kind, sealed_address = excluded.sealed_address, "
             "consent_at = excluded.consent_at, consent_road = excluded.consent_road, "
             "consent_words = excluded.consent_words WHERE excluded.consent_at >= device.consent_at "
             "OR device.consent_at > ?")
        .Bind(signup)
        .Bind(now)
        .Step();
}

// The previous device of the installation; 0 for none.
std::int64_t DeviceOfInstallation(Database& database, std::string_view installation)
{
    Statement device = database.Run("SELECT device FROM installation WHERE id = ?");
    return device.BindBytes(installation).Step() ? device.Integer(0) : 0;
}

// A device that no installation has any more is told so by its last text, and deleted with it.
void QueueLastText(Database& database, std::int64_t device, std::int64_t now)
{
    Statement other = database.Run("SELECT 1 FROM installation WHERE device = ?");
    if (other.Bind(device).Step()) {
        return;
    }
    database.Run("DELETE FROM outbox WHERE device = ?").Bind(device).Step();
    database
        .Run("INSERT INTO outbox (device, prayer, time, place, queued_at, kind, counted) "
             "SELECT id, 0, '', '', ?2, kind, 1 FROM device WHERE id = ?1")
        .Bind(device)
        .Bind(now)
        .Step();
}

void BindInstallation(Database& database, std::string_view installation, std::int64_t device,
                      std::int64_t now)
{
    const std::int64_t before = DeviceOfInstallation(database, installation);
    database
        .Run("INSERT INTO installation (id, device) VALUES (?, ?) "
             "ON CONFLICT (id) DO UPDATE SET device = excluded.device")
        .BindBytes(installation)
        .Bind(device)
        .Step();
    database.Run("DELETE FROM outbox WHERE device = ? AND prayer = 0").Bind(device).Step();
    if (before != device) {
        QueueLastText(database, before, now);
    }
}

} // namespace

SignupResult SqliteStore::SignUp(const Signup& signup, const SignupLimits& limits)
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    const auto exceeded = ExceededLimit(m_database, signup, limits, now);
    if (exceeded != SignupResult::Limit::None) {
        return {exceeded, 0};
    }
    const bool isFull = IsFull(m_database, signup, limits.devicesOfKind, now);
    if (isFull && !HasDevice(m_database, signup.addressIndex)) {
        return {SignupResult::Limit::Devices, 0};
    }
    std::int64_t device = DeviceOfAddress(m_database, signup.addressIndex);
    m_database
        .Run("INSERT INTO signup (device, kind, sealed_address, address_index, domain_index, code_hash, "
             "expires_at, consent_at, consent_road, consent_words, limit_index) "
             "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .Bind(device)
        .Bind(signup.kind)
        .BindBytes(signup.sealedAddress)
        .BindBytes(signup.addressIndex)
        .BindBytes(signup.domainIndex)
        .BindBytes(signup.codeHash)
        .Bind(now + signup.lifetime)
        .Bind(now)
        .Bind(signup.consentSource)
        .Bind(signup.consentText)
        .BindBytes(LimitIndexOf(signup))
        .Step();
    if (device == 0) {
        device = m_database.LastRow();
        m_database.Run("UPDATE signup SET device = id WHERE id = ?").Bind(device).Step();
    }
    transaction.Commit();
    return {SignupResult::Limit::None, device, isFull};
}

void SqliteStore::Withdraw(std::string_view codeHash)
{
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM signup WHERE code_hash = ? AND used_by IS NULL").BindBytes(codeHash).Step();
    transaction.Commit();
}

Confirmation SqliteStore::Confirm(std::string_view codeHash, std::string_view installation)
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    const std::optional<StoredSignup> signup = SignupOfCode(m_database, codeHash);
    if (!signup) {
        return Confirmation::Unknown;
    }
    const bool isFirst = signup->usedBy.empty();
    // A code is valid for minutes: if it expires in days, the clock was ahead when it was issued.
    if (isFirst && (signup->expiresAt < now || signup->expiresAt > now + kDay)) {
        return Confirmation::Expired;
    }
    if (!isFirst && (signup->usedBy != installation || signup->usedAt < now - kDay)) {
        return Confirmation::Unknown;
    }
    if (isFirst) {
        m_database.Run("UPDATE signup SET used_by = ?, used_at = ? WHERE id = ?")
            .BindBytes(installation)
            .Bind(now)
            .Bind(signup->id)
            .Step();
    }
    MakeOrRenewDevice(m_database, signup->id, now);
    BindInstallation(m_database, installation, signup->device, SteadyNow());
    transaction.Commit();
    return Confirmation::Confirmed;
}

void SqliteStore::DropOldSignups()
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    m_database
        .Run("UPDATE signup SET sealed_address = NULL "
             "WHERE sealed_address IS NOT NULL AND used_by IS NULL AND expires_at < ?")
        .Bind(now)
        .Step();
    m_database
        .Run("DELETE FROM signup WHERE (consent_at <= ?1 AND COALESCE(used_at, 0) < ?1 AND expires_at < ?2) "
             "OR MAX(consent_at, COALESCE(used_at, 0)) > ?3")
        .Bind(now - kDay)
        .Bind(now)
        .Bind(now + kDay)
        .Step();
    transaction.Commit();
}

bool SqliteStore::Forget(std::string_view addressIndex)
{
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM signup WHERE address_index = ?").BindBytes(addressIndex).Step();
    const bool hadSignups = m_database.Changes() > 0;
    m_database.Run("DELETE FROM device WHERE address_index = ?").BindBytes(addressIndex).Step();
    const bool hadDevice = m_database.Changes() > 0;
    transaction.Commit();
    return hadSignups || hadDevice;
}

} // namespace beacond
