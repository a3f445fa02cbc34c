// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

namespace beacond {

/// The steps that bring an empty SQLite file to the current schema, in order. Never change a released step:
/// the number of the steps applied to a file is its version.
inline constexpr std::array<std::string_view, 7> kSqliteMigrations = {R"(
CREATE TABLE key_check (
    name TEXT PRIMARY KEY,
    hash BLOB NOT NULL) WITHOUT ROWID;

CREATE TABLE start_count (
    day INTEGER NOT NULL,
    country TEXT NOT NULL,
    dist TEXT NOT NULL,
    count INTEGER NOT NULL,
    PRIMARY KEY (day, country, dist)) WITHOUT ROWID;

CREATE TABLE strip (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    html TEXT NOT NULL,
    dist TEXT NOT NULL,
    country TEXT NOT NULL,
    first_day TEXT NOT NULL,
    last_day TEXT NOT NULL);

CREATE TABLE release (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    name TEXT NOT NULL,
    sequence TEXT NOT NULL,
    url TEXT NOT NULL);

CREATE TABLE device (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    kind TEXT NOT NULL,
    sealed_address BLOB NOT NULL,
    address_index BLOB NOT NULL UNIQUE,
    code_hash BLOB NOT NULL UNIQUE,
    code_expires INTEGER NOT NULL,
    code_used_by BLOB,
    code_used_at INTEGER,
    consent_at INTEGER NOT NULL,
    consent_road TEXT NOT NULL,
    consent_words TEXT NOT NULL);

CREATE TABLE installation (
    id BLOB PRIMARY KEY,
    device INTEGER NOT NULL REFERENCES device (id) ON DELETE CASCADE) WITHOUT ROWID;
CREATE INDEX installation_of_device ON installation (device);

CREATE TABLE device_prayer (
    device INTEGER NOT NULL REFERENCES device (id) ON DELETE CASCADE,
    prayer INTEGER NOT NULL,
    queued_at INTEGER NOT NULL,
    PRIMARY KEY (device, prayer)) WITHOUT ROWID;

CREATE TABLE outbox (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    device INTEGER NOT NULL REFERENCES device (id) ON DELETE CASCADE,
    prayer INTEGER NOT NULL,
    time TEXT NOT NULL,
    place TEXT NOT NULL,
    queued_at INTEGER NOT NULL);
CREATE INDEX outbox_of_device ON outbox (device);
)",
                                                                      R"(
CREATE TABLE signup (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    device INTEGER NOT NULL,
    kind TEXT NOT NULL,
    sealed_address BLOB,
    address_index BLOB NOT NULL,
    domain_index BLOB NOT NULL,
    code_hash BLOB NOT NULL UNIQUE,
    expires_at INTEGER NOT NULL,
    used_by BLOB,
    used_at INTEGER,
    consent_at INTEGER NOT NULL,
    consent_road TEXT NOT NULL,
    consent_words TEXT NOT NULL);
CREATE INDEX signup_of_address ON signup (address_index, consent_at);
CREATE INDEX signup_of_domain ON signup (domain_index, consent_at);
CREATE INDEX signup_by_age ON signup (consent_at);

INSERT INTO signup (device, kind, sealed_address, address_index, domain_index, code_hash, expires_at, used_by,
                    used_at, consent_at, consent_road, consent_words)
    SELECT id, kind, sealed_address, address_index, x'', code_hash, code_expires, code_used_by,
           code_used_at, consent_at, consent_road, consent_words FROM device;
-- A device takes its number from its first sign-up: go on after the last number that was given.
DELETE FROM sqlite_sequence WHERE name = 'signup';
INSERT INTO sqlite_sequence (name, seq) SELECT 'signup', seq FROM sqlite_sequence WHERE name = 'device';

CREATE TABLE confirmed_device (
    id INTEGER PRIMARY KEY,
    kind TEXT NOT NULL,
    sealed_address BLOB NOT NULL,
    address_index BLOB NOT NULL UNIQUE,
    consent_at INTEGER NOT NULL,
    consent_road TEXT NOT NULL,
    consent_words TEXT NOT NULL);
INSERT INTO confirmed_device
    SELECT id, kind, sealed_address, address_index, consent_at, consent_road, consent_words FROM device
    WHERE id IN (SELECT device FROM installation);
DELETE FROM device_prayer WHERE device NOT IN (SELECT id FROM confirmed_device);
DELETE FROM outbox WHERE device NOT IN (SELECT id FROM confirmed_device);
DROP TABLE device;
ALTER TABLE confirmed_device RENAME TO device;
)",
                                                                      R"(
ALTER TABLE signup ADD COLUMN limit_index BLOB NOT NULL DEFAULT x'';
UPDATE signup SET limit_index = address_index;
CREATE INDEX signup_of_limit ON signup (limit_index, consent_at);
)",
                                                                      R"(
CREATE TABLE incoming (
    id BLOB PRIMARY KEY,
    first_at INTEGER NOT NULL,
    begun_at INTEGER NOT NULL,
    begun INTEGER NOT NULL,
    is_done INTEGER NOT NULL) WITHOUT ROWID;
CREATE INDEX incoming_by_age ON incoming (first_at);
CREATE INDEX device_of_kind ON device (kind);
)",
                                                                      R"(
ALTER TABLE outbox ADD COLUMN kind TEXT NOT NULL DEFAULT 'mail';
ALTER TABLE outbox ADD COLUMN due_at INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN fence INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN leased INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN begun INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN uncertain INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN attempts INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN counted INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN charge INTEGER NOT NULL DEFAULT 0;
ALTER TABLE outbox ADD COLUMN charge_day INTEGER NOT NULL DEFAULT 0;
CREATE INDEX outbox_by_due ON outbox (kind, due_at, id);

CREATE TABLE device_day (
    device INTEGER PRIMARY KEY REFERENCES device (id) ON DELETE CASCADE,
    begin_at INTEGER NOT NULL,
    texts INTEGER NOT NULL);

CREATE TABLE spend (
    day INTEGER PRIMARY KEY,
    amount INTEGER NOT NULL);
)",
                                                                      R"(
CREATE TABLE blocked (
    block_index BLOB PRIMARY KEY,
    kind TEXT NOT NULL,
    since INTEGER NOT NULL) WITHOUT ROWID;

CREATE TABLE silence (
    device INTEGER PRIMARY KEY REFERENCES device (id) ON DELETE CASCADE,
    day INTEGER NOT NULL,
    days INTEGER NOT NULL);
CREATE VIEW device_activity AS
    SELECT id AS device,
           MAX(consent_at, COALESCE((SELECT MAX(queued_at) FROM device_prayer WHERE device = id), 0)) AS last_at
    FROM device;
)",
                                                                      R"(
ALTER TABLE incoming ADD COLUMN is_kept INTEGER NOT NULL DEFAULT 0;
)"};

} // namespace beacond
