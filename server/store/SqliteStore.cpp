// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SqliteStore.h"

#include "store/Migrations.h"

#include <chrono>

namespace beacond {

namespace {

constexpr std::int64_t kSecondsBetweenTexts = 6 * 3600;
constexpr std::int64_t kSecondsOfRepeatedConfirmation = 24 * 3600;

std::int64_t SystemSeconds()
{
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// The statements of one call: all or none of them happen. Alone it is a transaction, inside one a part of it.
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

} // namespace

SqliteStore::SqliteStore(const std::string& path)
    : SqliteStore(path, &SystemSeconds)
{
}

SqliteStore::SqliteStore(const std::string& path, Clock clock)
    : m_database(path)
    , m_now(std::move(clock))
{
    m_database.Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON");
    Migrate(path);
}

void SqliteStore::Migrate(const std::string& path)
{
    Scope scope(m_database);
    Statement question = m_database.Run("PRAGMA user_version");
    question.Step();
    const std::int64_t version = question.Integer(0);
    if (version < 0 || version > std::ssize(kSqliteMigrations)) {
        throw StoreError(path + ": written by a newer version of the service (tables " +
                         std::to_string(version) + ", known up to " +
                         std::to_string(kSqliteMigrations.size()) + ")");
    }
    for (auto step = static_cast<std::size_t>(version); step < kSqliteMigrations.size(); ++step) {
        m_database.Execute(std::string(kSqliteMigrations[step]));
    }
    m_database.Execute("PRAGMA user_version = " + std::to_string(kSqliteMigrations.size()));
    scope.Finish();
}

void SqliteStore::AddStarts(const std::vector<StartCount>& counts)
{
    Scope scope(m_database);
    for (const StartCount& added : counts) {
        m_database
            .Run("INSERT INTO start_count (day, country, dist, count) VALUES (?, ?, ?, ?) "
                 "ON CONFLICT (day, country, dist) DO UPDATE SET count = count + excluded.count")
            .Bind(added.day)
            .Bind(added.country)
            .Bind(added.dist)
            .Bind(added.count)
            .Step();
    }
    scope.Finish();
}

std::vector<StartCount> SqliteStore::Starts()
{
    std::vector<StartCount> counts;
    Statement rows =
        m_database.Run("SELECT day, country, dist, count FROM start_count ORDER BY day, country, dist");
    while (rows.Step()) {
        counts.push_back(
            {static_cast<std::int32_t>(rows.Integer(0)), rows.Text(1), rows.Text(2), rows.Integer(3)});
    }
    return counts;
}

std::int64_t SqliteStore::AddStrip(const Strip& strip)
{
    Scope scope(m_database);
    m_database.Run("INSERT INTO strip (html, dist, country, first_day, last_day) VALUES (?, ?, ?, ?, ?)")
        .Bind(strip.html)
        .Bind(strip.dist)
        .Bind(strip.country)
        .Bind(strip.from)
        .Bind(strip.until)
        .Step();
    const std::int64_t id = m_database.LastRow();
    scope.Finish();
    return id;
}

bool SqliteStore::RemoveStrip(std::int64_t id)
{
    Scope scope(m_database);
    m_database.Run("DELETE FROM strip WHERE id = ?").Bind(id).Step();
    const bool isRemoved = m_database.Changes() > 0;
    scope.Finish();
    return isRemoved;
}

std::vector<Strip> SqliteStore::Strips()
{
    std::vector<Strip> strips;
    Statement rows =
        m_database.Run("SELECT id, html, dist, country, first_day, last_day FROM strip ORDER BY id");
    while (rows.Step()) {
        strips.push_back(
            {rows.Integer(0), rows.Text(1), rows.Text(2), rows.Text(3), rows.Text(4), rows.Text(5)});
    }
    return strips;
}

void SqliteStore::AddRelease(const Release& release)
{
    Scope scope(m_database);
    m_database.Run("INSERT INTO release (name, sequence, url) VALUES (?, ?, ?)")
        .Bind(release.name)
        .Bind(release.sequence)
        .Bind(release.url)
        .Step();
    scope.Finish();
}

std::vector<Release> SqliteStore::Releases()
{
    std::vector<Release> releases;
    Statement rows = m_database.Run("SELECT name, sequence, url FROM release ORDER BY id");
    while (rows.Step()) {
        releases.push_back({rows.Text(0), rows.Text(1), rows.Text(2)});
    }
    return releases;
}

std::int64_t SqliteStore::SignUp(const Signup& signup)
{
    const std::int64_t now = m_now();
    Scope scope(m_database);
    Statement device = m_database.Run(
        "INSERT INTO device (kind, sealed_address, address_index, code_hash, code_expires, consent_at, "
        "consent_road, consent_words) VALUES (?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT (address_index) DO UPDATE SET kind = excluded.kind, "
        "sealed_address = excluded.sealed_address, code_hash = excluded.code_hash, "
        "code_expires = excluded.code_expires, code_used_by = NULL, code_used_at = NULL, "
        "consent_at = excluded.consent_at, consent_road = excluded.consent_road, "
        "consent_words = excluded.consent_words RETURNING id");
    device.Bind(signup.kind).BindBytes(signup.sealedAddress).BindBytes(signup.addressIndex);
    device.BindBytes(signup.codeHash).Bind(now + signup.lifetime);
    device.Bind(now).Bind(signup.road).Bind(signup.words);
    device.Step();
    const std::int64_t id = device.Integer(0);
    while (device.Step()) {
    }
    scope.Finish();
    return id;
}

Confirmation SqliteStore::Confirm(std::string_view codeHash, std::string_view installation)
{
    const std::int64_t now = m_now();
    Scope scope(m_database);
    Statement device =
        m_database.Run("SELECT id, code_expires, code_used_by, code_used_at FROM device WHERE code_hash = ?");
    device.BindBytes(codeHash);
    if (!device.Step()) {
        return Confirmation::Unknown;
    }
    const std::string usedBy = device.Text(2);
    if (usedBy.empty() && device.Integer(1) < now) {
        return Confirmation::Expired;
    }
    if (!usedBy.empty() &&
        (usedBy != installation || device.Integer(3) < now - kSecondsOfRepeatedConfirmation)) {
        return Confirmation::Unknown;
    }
    if (usedBy.empty()) {
        m_database.Run("UPDATE device SET code_used_by = ?, code_used_at = ? WHERE id = ?")
            .BindBytes(installation)
            .Bind(now)
            .Bind(device.Integer(0))
            .Step();
    }
    m_database
        .Run("INSERT INTO installation (id, device) VALUES (?, ?) "
             "ON CONFLICT (id) DO UPDATE SET device = excluded.device")
        .BindBytes(installation)
        .Bind(device.Integer(0))
        .Step();
    scope.Finish();
    return Confirmation::Confirmed;
}

bool SqliteStore::Forget(std::string_view addressIndex)
{
    Scope scope(m_database);
    m_database.Run("DELETE FROM device WHERE address_index = ?").BindBytes(addressIndex).Step();
    const bool isForgotten = m_database.Changes() > 0;
    scope.Finish();
    return isForgotten;
}

bool SqliteStore::QueueText(std::string_view installation, int prayer, std::string_view time,
                            std::string_view place)
{
    const std::int64_t now = m_now();
    Scope scope(m_database);
    // No date is sent, and two computers may share a phone: the time since the last text decides.
    m_database
        .Run("INSERT INTO device_prayer (device, prayer, queued_at) "
             "SELECT device, ?2, ?3 FROM installation WHERE id = ?1 "
             "ON CONFLICT (device, prayer) DO UPDATE SET queued_at = excluded.queued_at "
             "WHERE device_prayer.queued_at < excluded.queued_at - ?4")
        .BindBytes(installation)
        .Bind(prayer)
        .Bind(now)
        .Bind(kSecondsBetweenTexts)
        .Step();
    if (m_database.Changes() == 0) {
        return false;
    }
    m_database
        .Run("INSERT INTO outbox (device, prayer, time, place, queued_at) "
             "SELECT device, ?, ?, ?, ? FROM installation WHERE id = ?")
        .Bind(prayer)
        .Bind(time)
        .Bind(place)
        .Bind(now)
        .BindBytes(installation)
        .Step();
    scope.Finish();
    return true;
}

std::vector<OutboxRow> SqliteStore::Outbox(std::size_t most)
{
    std::vector<OutboxRow> texts;
    Statement rows =
        m_database.Run("SELECT id, device, prayer, time, place, queued_at FROM outbox ORDER BY id LIMIT ?");
    rows.Bind(static_cast<std::int64_t>(most));
    while (rows.Step()) {
        texts.push_back({rows.Integer(0), rows.Integer(1), static_cast<int>(rows.Integer(2)), rows.Text(3),
                         rows.Text(4), rows.Integer(5)});
    }
    return texts;
}

bool SqliteStore::IsWrittenWith(std::string_view keyName, std::string_view check)
{
    Scope scope(m_database);
    m_database.Run("INSERT INTO key_check (name, hash) VALUES (?, ?) ON CONFLICT (name) DO NOTHING")
        .Bind(keyName)
        .BindBytes(check)
        .Step();
    Statement known = m_database.Run("SELECT hash FROM key_check WHERE name = ?");
    known.Bind(keyName);
    const bool isSame = known.Step() && known.Text(0) == check;
    scope.Finish();
    return isSame;
}

std::int64_t SqliteStore::DataVersion()
{
    Statement version = m_database.Run("PRAGMA data_version");
    version.Step();
    return version.Integer(0);
}

void SqliteStore::Begin()
{
    m_database.Execute("BEGIN IMMEDIATE");
}

void SqliteStore::End()
{
    m_database.Execute("COMMIT");
}

void SqliteStore::Abandon() noexcept
{
    m_database.TryExecute("ROLLBACK");
}

} // namespace beacond
