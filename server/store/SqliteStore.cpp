// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SqliteStore.h"

#include "store/StoreFile.h"

#include <chrono>
#include <ctime>
#include <filesystem>

namespace beacond {

namespace {

constexpr std::int64_t kSecondsBetweenTexts = 6L * 3600;

std::int64_t SystemSeconds()
{
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// Goes on while the machine sleeps.
std::int64_t SecondsSinceBoot()
{
    std::timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return time.tv_sec;
}

} // namespace

SqliteStore::SqliteStore(const std::string& path)
    : SqliteStore(path, &SystemSeconds, &SecondsSinceBoot)
{
}

SqliteStore::SqliteStore(const std::string& path, Clock now, Clock elapsed)
    : m_path(path)
    , m_database(path)
    , m_now(std::move(now))
    , m_elapsed(elapsed ? std::move(elapsed) : m_now)
    , m_begin(m_now() - m_elapsed())
{
    UpdateSchema(m_database, path);
}

SqliteStore::SqliteStore(const std::string& path, Database::Access access)
    : m_path(path)
    , m_database(path, access)
    , m_now(&SystemSeconds)
    , m_elapsed(&SecondsSinceBoot)
    , m_begin(m_now() - m_elapsed())
{
    RequireCurrentSchema(m_database, path);
}

SqliteStore SqliteStore::ToRead(const std::string& path)
{
    if (!std::filesystem::exists(path)) {
        throw StoreError(path + ": there is no store yet; the service makes it when it starts");
    }
    return {path, Database::Access::Read};
}

void SqliteStore::AddStarts(const std::vector<StartCount>& counts)
{
    Transaction transaction(m_database);
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
    transaction.Commit();
}

std::vector<StartCount> SqliteStore::Starts() const
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
    Transaction transaction(m_database);
    m_database.Run("INSERT INTO strip (html, dist, country, first_day, last_day) VALUES (?, ?, ?, ?, ?)")
        .Bind(strip.html)
        .Bind(strip.dist)
        .Bind(strip.country)
        .Bind(strip.from)
        .Bind(strip.until)
        .Step();
    const std::int64_t id = m_database.LastRow();
    transaction.Commit();
    return id;
}

bool SqliteStore::RemoveStrip(std::int64_t id)
{
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM strip WHERE id = ?").Bind(id).Step();
    const bool isRemoved = m_database.Changes() > 0;
    transaction.Commit();
    return isRemoved;
}

std::vector<Strip> SqliteStore::Strips() const
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
    Transaction transaction(m_database);
    m_database.Run("INSERT INTO release (name, sequence, url) VALUES (?, ?, ?)")
        .Bind(release.name)
        .Bind(release.sequence)
        .Bind(release.url)
        .Step();
    transaction.Commit();
}

bool SqliteStore::RemoveRelease(std::string_view name, std::string_view sequence)
{
    Transaction transaction(m_database);
    m_database.Run("DELETE FROM release WHERE name = ? AND sequence = ?").Bind(name).Bind(sequence).Step();
    const bool isRemoved = m_database.Changes() > 0;
    transaction.Commit();
    return isRemoved;
}

std::vector<Release> SqliteStore::Releases() const
{
    std::vector<Release> releases;
    Statement rows = m_database.Run("SELECT name, sequence, url FROM release ORDER BY id");
    while (rows.Step()) {
        releases.push_back({rows.Text(0), rows.Text(1), rows.Text(2)});
    }
    return releases;
}

bool SqliteStore::IsTextDue(std::string_view installation, int prayer) const
{
    Statement due = m_database.Run("SELECT 1 FROM installation LEFT JOIN device_prayer "
                                   "ON device_prayer.device = installation.device AND prayer = ?2 "
                                   "WHERE id = ?1 AND (queued_at IS NULL OR ABS(?3 - queued_at) > ?4)");
    return due.BindBytes(installation).Bind(prayer).Bind(m_now()).Bind(kSecondsBetweenTexts).Step();
}

bool SqliteStore::QueueText(std::string_view installation, int prayer, std::string_view time,
                            std::string_view place)
{
    const std::int64_t now = m_now();
    Transaction transaction(m_database);
    // The request has no date, and two computers may share a phone: compare the time with that of the last
    // text. A text dated far ahead by a wrong clock must not block later texts until its date.
    m_database
        .Run("INSERT INTO device_prayer (device, prayer, queued_at) "
             "SELECT device, ?2, ?3 FROM installation WHERE id = ?1 "
             "ON CONFLICT (device, prayer) DO UPDATE SET queued_at = excluded.queued_at "
             "WHERE ABS(excluded.queued_at - device_prayer.queued_at) > ?4")
        .BindBytes(installation)
        .Bind(prayer)
        .Bind(now)
        .Bind(kSecondsBetweenTexts)
        .Step();
    if (m_database.Changes() == 0) {
        return false;
    }
    m_database
        .Run("INSERT INTO outbox (device, prayer, time, place, queued_at, kind) "
             "SELECT device, ?, ?, ?, ?, kind FROM installation JOIN device ON device.id = device "
             "WHERE installation.id = ?")
        .Bind(prayer)
        .Bind(time)
        .Bind(place)
        .Bind(SteadyNow())
        .BindBytes(installation)
        .Step();
    transaction.Commit();
    return true;
}

std::vector<OutboxRow> SqliteStore::Outbox(std::size_t most) const
{
    std::vector<OutboxRow> texts;
    Statement rows = m_database.Run("SELECT id, device, prayer, time, place FROM outbox ORDER BY id LIMIT ?");
    rows.Bind(static_cast<std::int64_t>(most));
    while (rows.Step()) {
        texts.push_back({rows.Integer(0), rows.Integer(1), static_cast<int>(rows.Integer(2)), rows.Text(3),
                         rows.Text(4)});
    }
    return texts;
}

bool SqliteStore::IsWrittenWith(std::string_view keyName, std::string_view check)
{
    Transaction transaction(m_database);
    m_database.Run("INSERT INTO key_check (name, hash) VALUES (?, ?) ON CONFLICT (name) DO NOTHING")
        .Bind(keyName)
        .BindBytes(check)
        .Step();
    Statement known = m_database.Run("SELECT hash FROM key_check WHERE name = ?");
    known.Bind(keyName);
    const bool isSame = known.Step() && known.Text(0) == check;
    transaction.Commit();
    return isSame;
}

std::int64_t SqliteStore::DataVersion() const
{
    m_database.RequireItsPath();
    Statement version = m_database.Run("PRAGMA data_version");
    version.Step();
    return version.Integer(0);
}

void SqliteStore::TryToWrite()
{
    Transaction transaction(m_database);
    // A newer service may have migrated the file meanwhile: keep its version.
    RequireCurrentSchema(m_database, m_path);
    WriteVersion(m_database);
    transaction.Commit();
}

void SqliteStore::Begin()
{
    m_database.RequireItsPath();
    m_database.BeginGroup();
}

void SqliteStore::End()
{
    m_database.EndGroup();
    if (m_isClearDue) {
        ClearDeleted();
    }
}

void SqliteStore::Abandon() noexcept
{
    m_isClearDue = false;
    m_database.AbandonGroup();
}

} // namespace beacond
