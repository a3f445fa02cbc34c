// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The sending side of SqliteStore's outbox: leases, caps, spending.
#include "store/SqliteStore.h"

#include <algorithm>

namespace beacond {

namespace {

constexpr std::int64_t kDay = 24L * 3600;
// Shorter than a day: from one day to the next a prayer can be some minutes earlier.
constexpr std::int64_t kDeviceWindow = 23L * 3600;
constexpr std::int64_t kTextsOfADevice = 6;
constexpr std::int64_t kDaysOfSpend = 30;
// The clock may have been set back between two runs of the service: the age of a text dated ahead is unknown.
constexpr std::int64_t kMostAhead = 60;

struct DueText
{
    LeasedText leased;
    bool isCounted = false; ///< for the device
    bool isCharged = false; ///< by a lease that ended before the text was sent
};

std::int64_t SpentOn(Database& database, std::int64_t day)
{
    Statement spent = database.Run("SELECT amount FROM spend WHERE day = ?");
    return spent.Bind(day).Step() ? spent.Integer(0) : 0;
}

void AddSpend(Database& database, std::int64_t day, std::int64_t amount)
{
    database
        .Run("INSERT INTO spend (day, amount) VALUES (?, MAX(0, ?)) "
             "ON CONFLICT (day) DO UPDATE SET amount = MAX(0, amount + excluded.amount)")
        .Bind(day)
        .Bind(amount)
        .Step();
}

void Refund(Database& database, std::int64_t day, std::int64_t amount)
{
    database.Run("UPDATE spend SET amount = MAX(0, amount - ?) WHERE day = ?").Bind(amount).Bind(day).Step();
}

// The number of further messages that the limit allows, at most @p most.
std::int64_t Affordable(Database& database, std::int64_t day, const LeaseTerms& terms, std::int64_t most)
{
    if (terms.price == 0 || terms.spendPerDay == 0) {
        return most;
    }
    const std::int64_t left = std::max<std::int64_t>(0, terms.spendPerDay - SpentOn(database, day));
    return std::min(most, left / terms.price);
}

// Due texts, those in the first attempt before the others.
std::vector<DueText> DueTexts(Database& database, const LeaseTerms& terms, std::int64_t now)
{
    std::vector<DueText> texts;
    Statement rows = database.Run(
        "SELECT outbox.id, device, prayer, time, place, fence, sealed_address, attempts, begun, uncertain, "
        "counted, charge, queued_at FROM outbox JOIN device ON device.id = outbox.device "
        "WHERE outbox.kind = ?1 AND (due_at <= ?2 OR due_at > ?2 + ?3) "
        "AND ?2 - queued_at BETWEEN -?4 AND ?5 - 1 ORDER BY due_at, outbox.id LIMIT ?6");
    rows.Bind(terms.kind).Bind(now).Bind(kLongestLease).Bind(kMostAhead).Bind(kTextLifetime);
    rows.Bind(static_cast<std::int64_t>(terms.most));
    while (rows.Step()) {
        const bool isBegun = rows.Integer(8) != 0;
        texts.push_back({.leased = {.text = {rows.Integer(0), rows.Integer(1),
                                             static_cast<int>(rows.Integer(2)), rows.Text(3), rows.Text(4)},
                                    .fence = rows.Integer(5) + 1,
                                    .sealedAddress = rows.Text(6),
                                    .attempts = rows.Integer(7),
                                    .queuedAt = rows.Integer(12),
                                    .mayBeSent = isBegun || rows.Integer(9) != 0},
                         .isCounted = rows.Integer(10) != 0,
                         .isCharged = rows.Integer(11) != 0 && !isBegun});
    }
    return texts;
}

void WriteLease(Database& database, const DueText& text, const LeaseTerms& terms, std::int64_t now,
                std::int64_t day)
{
    database
        .Run("UPDATE outbox SET due_at = ?2, fence = ?3, leased = 1, begun = 0, uncertain = ?4, counted = 1 "
             "WHERE id = ?1")
        .Bind(text.leased.text.id)
        .Bind(now + terms.seconds)
        .Bind(text.leased.fence)
        .Bind(std::int64_t{text.leased.mayBeSent})
        .Step();
    if (!text.isCharged) {
        database.Run("UPDATE outbox SET charge = ?2, charge_day = ?3 WHERE id = ?1")
            .Bind(text.leased.text.id)
            .Bind(terms.price)
            .Bind(day)
            .Step();
    }
}

// Counts the first attempt of a text. False if the device has had its texts.
bool CountForDevice(Database& database, std::int64_t device, std::int64_t now)
{
    database
        .Run("INSERT INTO device_day (device, begin_at, texts) VALUES (?1, ?2, 1) "
             "ON CONFLICT (device) DO UPDATE SET "
             "texts = CASE WHEN ?2 - begin_at BETWEEN 0 AND ?3 - 1 THEN texts + 1 ELSE 1 END, "
             "begin_at = CASE WHEN ?2 - begin_at BETWEEN 0 AND ?3 - 1 THEN begin_at ELSE ?2 END "
             "WHERE texts < ?4 OR ?2 - begin_at NOT BETWEEN 0 AND ?3 - 1")
        .Bind(device)
        .Bind(now)
        .Bind(kDeviceWindow)
        .Bind(kTextsOfADevice)
        .Step();
    return database.Changes() > 0;
}

void Delete(Database& database, std::int64_t text)
{
    database.Run("DELETE FROM outbox WHERE id = ?").Bind(text).Step();
}

// Devices that have had their last text.
void DeleteFormerDevices(Database& database)
{
    database
        .Run("DELETE FROM device WHERE id NOT IN (SELECT device FROM installation) AND "
             "id NOT IN (SELECT device FROM outbox)")
        .Step();
}

} // namespace

bool SqliteStore::IsTextWaiting(std::string_view kind) const
{
    Statement row =
        m_database.Run("SELECT 1 FROM outbox WHERE kind = ?1 AND (due_at <= ?2 OR due_at > ?2 + ?3) LIMIT 1");
    return row.Bind(kind).Bind(SteadyNow()).Bind(kLongestLease).Step();
}

Lease SqliteStore::LeaseTexts(const LeaseTerms& terms)
{
    const std::int64_t now = SteadyNow();
    const std::int64_t day = m_now() / kDay;
    Transaction transaction(m_database);
    const std::vector<DueText> due = DueTexts(m_database, terms, now);
    std::int64_t affordable = Affordable(m_database, day, terms, static_cast<std::int64_t>(due.size()));
    std::int64_t charged = 0;
    Lease lease;
    for (const DueText& text : due) {
        if (!text.isCharged && affordable == 0) {
            lease.isSpendReached = true;
            continue;
        }
        if (!text.isCounted && !CountForDevice(m_database, text.leased.text.device, now)) {
            Delete(m_database, text.leased.text.id);
            ++lease.dropped;
            continue;
        }
        if (!text.isCharged) {
            --affordable;
            charged += terms.price;
        }
        WriteLease(m_database, text, terms, now, day);
        lease.texts.push_back(text.leased);
    }
    if (charged > 0) {
        AddSpend(m_database, day, charged);
    }
    transaction.Commit();
    return lease;
}

bool SqliteStore::BeginSending(std::int64_t text, std::int64_t fence)
{
    Transaction transaction(m_database);
    m_database
        .Run("UPDATE outbox SET begun = 1, attempts = attempts + 1 "
             "WHERE id = ?1 AND fence = ?2 AND leased = 1 AND begun = 0 AND due_at > ?3 AND "
             "due_at <= ?3 + ?4")
        .Bind(text)
        .Bind(fence)
        .Bind(SteadyNow())
        .Bind(kLongestLease)
        .Step();
    const bool isBegun = m_database.Changes() > 0;
    transaction.Commit();
    return isBegun;
}

bool SqliteStore::EndSending(std::int64_t text, std::int64_t fence, TextEnd end, std::int64_t retryAfter)
{
    Transaction transaction(m_database);
    Statement row = m_database.Run(
        "SELECT charge, charge_day, prayer FROM outbox WHERE id = ? AND fence = ? AND leased = 1");
    if (!row.Bind(text).Bind(fence).Step()) {
        return false;
    }
    const bool isLast = row.Integer(2) == 0;
    const bool isRefunded = end == TextEnd::RetryLater || end == TextEnd::Refused || end == TextEnd::NotTried;
    if (const std::int64_t charge = row.Integer(0); isRefunded && charge > 0) {
        Refund(m_database, row.Integer(1), charge);
    }
    if (end == TextEnd::Sent || end == TextEnd::Refused) {
        Delete(m_database, text);
        if (isLast) {
            DeleteFormerDevices(m_database);
        }
    } else {
        m_database
            .Run("UPDATE outbox SET leased = 0, begun = 0, charge = 0, due_at = ?2, uncertain = uncertain OR "
                 "?3 "
                 "WHERE id = ?1")
            .Bind(text)
            .Bind(end == TextEnd::NotTried ? 0 : SteadyNow() + retryAfter)
            .Bind(std::int64_t{end == TextEnd::Unknown})
            .Step();
    }
    transaction.Commit();
    return true;
}

std::int64_t SqliteStore::DropOldTexts()
{
    const std::int64_t now = SteadyNow();
    Transaction transaction(m_database);
    // A lease that has not expired can still end with a receipt.
    m_database
        .Run("DELETE FROM outbox WHERE ?1 - queued_at NOT BETWEEN -?2 AND ?3 - 1 AND (leased = 0 OR "
             "due_at <= ?1 OR due_at > ?1 + ?4)")
        .Bind(now)
        .Bind(kMostAhead)
        .Bind(kTextLifetime)
        .Bind(kLongestLease)
        .Step();
    const std::int64_t dropped = m_database.Changes();
    if (dropped > 0) {
        DeleteFormerDevices(m_database);
    }
    m_database.Run("DELETE FROM spend WHERE day < ?").Bind(m_now() / kDay - kDaysOfSpend).Step();
    transaction.Commit();
    return dropped;
}

OutboxState SqliteStore::StateOfOutbox() const
{
    const std::int64_t now = SteadyNow();
    OutboxState state;
    Statement rows =
        m_database.Run("SELECT COUNT(*), COALESCE(SUM(leased = 1 AND due_at > ?1 AND due_at <= ?1 + ?2), 0), "
                       "COALESCE(?1 - MIN(queued_at), 0), COALESCE(SUM(begun OR uncertain), 0) FROM outbox");
    rows.Bind(now).Bind(kLongestLease).Step();
    state.leased = rows.Integer(1);
    state.waiting = rows.Integer(0) - state.leased;
    state.oldestAge = std::max<std::int64_t>(0, rows.Integer(2));
    state.uncertain = rows.Integer(3);
    state.spentToday = SpentOn(m_database, m_now() / kDay);
    return state;
}

std::vector<WaitingText> SqliteStore::WaitingTexts(std::size_t most) const
{
    const std::int64_t now = SteadyNow();
    std::vector<WaitingText> texts;
    Statement rows =
        m_database.Run("SELECT id, device, prayer, time, place, kind, queued_at, attempts, leased, "
                       "due_at, uncertain FROM outbox ORDER BY id LIMIT ?");
    rows.Bind(static_cast<std::int64_t>(most));
    while (rows.Step()) {
        texts.push_back({.text = {rows.Integer(0), rows.Integer(1), static_cast<int>(rows.Integer(2)),
                                  rows.Text(3), rows.Text(4)},
                         .kind = rows.Text(5),
                         .age = now - rows.Integer(6),
                         .attempts = rows.Integer(7),
                         .isLeased = rows.Integer(8) != 0 && rows.Integer(9) > now &&
                                     rows.Integer(9) <= now + kLongestLease,
                         .dueIn = std::max<std::int64_t>(0, rows.Integer(9) - now),
                         .mayBeSent = rows.Integer(10) != 0});
    }
    return texts;
}

bool SqliteStore::TrySpend(std::int64_t amount, std::int64_t perDay)
{
    const std::int64_t day = m_now() / kDay;
    Transaction transaction(m_database);
    if (perDay > 0 && SpentOn(m_database, day) + amount > perDay) {
        return false;
    }
    AddSpend(m_database, day, amount);
    transaction.Commit();
    return true;
}

void SqliteStore::GiveBackSpend(std::int64_t amount)
{
    Transaction transaction(m_database);
    Refund(m_database, m_now() / kDay, amount);
    transaction.Commit();
}

} // namespace beacond
