// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

namespace beacond {

/// The steps that bring an empty SQLite file to today's tables, in order. A step that has been released is
/// never changed: the number of steps that a file has gone through is its version.
inline constexpr std::array<std::string_view, 1> kSqliteMigrations = {R"(
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
)"};

} // namespace beacond
