// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The personal data of SqliteStore: what is held about an address, blocked addresses, new keys.
#include "store/SqliteStore.h"

namespace beacond {

namespace {

constexpr std::int64_t kDay = 24L * 3600;
constexpr std::int64_t kLongestSilence = 365 * kDay;
constexpr std::int64_t kSilentDays = 7;

void ReadDevice(Database& database, std::string_view addressIndex, PersonalData& data)
{
    Statement row = database.Run("SELECT id, kind, sealed_address, consent_at, consent_road, consent_words "
                                 "FROM device WHERE address_index = ?");
    if (row.BindBytes(addressIndex).Step()) {
        data.device = PersonalData::Device{row.Integer(0), row.Text(1), row.Text(2),
                                           row.Integer(3), row.Text(4), row.Text(5)};
    }
}

void ReadRowsOfDevice(Database& database, std::int64_t device, PersonalData& data)
{
    Statement installations = database.Run("SELECT id FROM installation WHERE device = ? ORDER BY id");
    installations.Bind(device);
    while (installations.Step()) {
        data.installations.push_back(installations.Text(0));
    }
    Statement texts =
        database.Run("SELECT prayer, queued_at FROM device_prayer WHERE device = ? ORDER BY prayer");
    texts.Bind(device);
    while (texts.Step()) {
        data.lastTexts.push_back({static_cast<int>(texts.Integer(0)), texts.Integer(1)});
    }
    Statement waiting =
        database.Run("SELECT id, prayer, time, place FROM outbox WHERE device = ? ORDER BY id");
    waiting.Bind(device);
    while (waiting.Step()) {
        OutboxRow text;
        text.id = waiting.Integer(0);
        text.device = device;
        text.prayer = static_cast<int>(waiting.Integer(1));
        text.time = waiting.Text(2);
        text.place = waiting.Text(3);
        data.waiting.push_back(text);
    }
}

void ReadSignups(Database& database, std::string_view addressIndex, PersonalData& data)
{
    Statement rows = database.Run("SELECT consent_at, consent_road, consent_words, sealed_address, "
                                  "expires_at, used_at FROM signup WHERE address_index = ? ORDER BY id");
    rows.BindBytes(addressIndex);
    while (rows.Step()) {
        data.signups.push_back(
            {rows.Integer(0), rows.Text(1), rows.Text(2), rows.Text(3), rows.Integer(4), rows.Integer(5)});
    }
}

// Two tables have addresses; a literal for each, since the address of its text is the key of a statement.
struct AddressTable
{
    const char* select;
    const char* update;
};
constexpr AddressTable kAddressTables[] = {
    {"SELECT id, kind, sealed_address, address_index FROM device",
     "UPDATE device SET sealed_address = ?, address_index = ? WHERE id = ?"},
    {"SELECT id, kind, sealed_address, address_index FROM signup WHERE sealed_address IS NOT NULL",
     "UPDATE signup SET sealed_address = ?, address_index = ? WHERE id = ?"},
};

std::vector<std::pair<std::int64_t, StoredAddress>> AddressesOf(Database& database, const AddressTable& table)
{
    std::vector<std::pair<std::int64_t, StoredAddress>> addresses;
    Statement rows = database.Run(table.select);
    while (rows.Step()) {
        addresses.push_back({rows.Integer(0), {rows.Text(1), rows.Text(2), rows.Text(3)}});
    }
    return addresses;
}

} // namespace

PersonalData SqliteStore::DataOf(std::string_view addressIndex) const
{
    PersonalData data;
    ReadDevice(m_database, addressIndex, data);
    if (data.device) {
        ReadRowsOfDevice(m_database, data.device->id, data);
    }
    ReadSignups(m_database, addressIndex, data);
    return data;
}

bool SqliteStore::Block(const BlockedAddress& blocked, std::string_view addressIndex)
{
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM signup WHERE address_index = ?").BindBytes(addressIndex).Step();
    m_database.Run("DELETE FROM device WHERE address_index = ?").BindBytes(addressIndex).Step();
    m_database.Run("INSERT INTO blocked (block_index, kind, since) VALUES (?, ?, ?) ON CONFLICT DO NOTHING")
        .BindBytes(blocked.blockIndex)
        .Bind(blocked.kind)
        .Bind(m_now())
        .Step();
    const bool isNew = m_database.Changes() > 0;
    transaction.Commit();
    return isNew;
}

bool SqliteStore::Unblock(std::string_view blockIndex)
{
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM blocked WHERE block_index = ?").BindBytes(blockIndex).Step();
    const bool wasBlocked = m_database.Changes() > 0;
    transaction.Commit();
    return wasBlocked;
}

std::vector<BlockedAddress> SqliteStore::BlockedAddresses() const
{
    std::vector<BlockedAddress> addresses;
    Statement rows =
        m_database.Run("SELECT block_index, kind, since FROM blocked ORDER BY since, block_index");
    while (rows.Step()) {
        addresses.push_back({rows.Text(0), rows.Text(1), rows.Integer(2)});
    }
    return addresses;
}

std::int64_t SqliteStore::DropSilentDevices()
{
    const std::int64_t now = m_now();
    const std::int64_t today = now / kDay;
    Transaction transaction(m_database);
    // A device is noted from a week before its deletion on. Days of a clock that has been set back do not
    // count.
    const std::int64_t noted = now - kLongestSilence + kSilentDays * kDay;
    m_database
        .Run("DELETE FROM silence WHERE day > ?1 "
             "OR device IN (SELECT device FROM device_activity WHERE last_at >= ?2)")
        .Bind(today)
        .Bind(noted)
        .Step();
    m_database
        .Run("INSERT INTO silence (device, day, days) "
             "SELECT device, ?1, 1 FROM device_activity WHERE last_at < ?2 "
             "ON CONFLICT (device) DO UPDATE SET day = excluded.day, days = days + 1 "
             "WHERE excluded.day > silence.day")
        .Bind(today)
        .Bind(noted)
        .Step();
    m_database
        .Run("DELETE FROM device WHERE id IN (SELECT device FROM silence JOIN device_activity "
             "USING (device) WHERE days >= ?1 AND last_at < ?2)")
        .Bind(kSilentDays)
        .Bind(now - kLongestSilence)
        .Step();
    const std::int64_t count = m_database.Changes();
    transaction.Commit();
    return count;
}

void SqliteStore::ReplaceAddresses(const std::function<StoredAddress(const StoredAddress&)>& replace,
                                   const std::map<std::string, std::string>& keyChecks)
{
    Transaction transaction(m_database);
    for (const AddressTable& table : kAddressTables) {
        for (const auto& [id, stored] : AddressesOf(m_database, table)) {
            const StoredAddress replaced = replace(stored);
            m_database.Run(table.update)
                .BindBytes(replaced.sealedAddress)
                .BindBytes(replaced.addressIndex)
                .Bind(id)
                .Step();
        }
    }
    m_database.Run("UPDATE signup SET address_index = x'' WHERE sealed_address IS NULL").Step();
    m_database.Run("UPDATE signup SET domain_index = x'', limit_index = x''").Step();
    for (const auto& [name, check] : keyChecks) {
        m_database
            .Run("INSERT INTO key_check (name, hash) VALUES (?, ?) "
                 "ON CONFLICT (name) DO UPDATE SET hash = excluded.hash")
            .Bind(name)
            .BindBytes(check)
            .Step();
    }
    transaction.Commit();
    // The log still has the former values.
    ClearDeleted();
}

void SqliteStore::ClearDeleted()
{
    m_isClearDue = m_database.IsInGroup();
    if (!m_isClearDue) {
        m_database.TryExecute("PRAGMA wal_checkpoint(TRUNCATE)");
    }
}

std::string SqliteStore::KeyCheck(std::string_view keyName) const
{
    Statement hash = m_database.Run("SELECT hash FROM key_check WHERE name = ?");
    hash.Bind(keyName);
    return hash.Step() ? hash.Text(0) : std::string();
}

} // namespace beacond
