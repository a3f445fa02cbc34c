// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Replaces SQLite's file system during its lifetime: real files, with a record of the synced bytes and names
/// in the folder. Simulates a power cut, which loses unsynced changes, and a full disk. For one folder and
/// one thread; a sync does not wait for the real disk.
class UnsyncedDisk final
{
public:
    UnsyncedDisk();
    ~UnsyncedDisk();
    UnsyncedDisk(const UnsyncedDisk&) = delete;
    UnsyncedDisk& operator=(const UnsyncedDisk&) = delete;

    /// Allows this number of further writes, syncs, truncations and deletions; later ones fail.
    void CutAfter(std::size_t changes) { m_changesLeft = changes; }
    /// Whether one of them has failed.
    [[nodiscard]] bool IsCut() const { return m_isCut; }
    /// Puts the files into their state after the power cut, without the unsynced changes, and restores the
    /// power.
    void Restart();
    /// The same, but keeps a random part of the unsynced names, truncations and 4 KiB blocks.
    void Restart(unsigned seed);

    /// The disk is full after this number of further writes.
    void FillAfter(std::size_t writes) { m_writesLeft = writes; }
    void MakeRoom() { m_writesLeft.reset(); }

private:
    /// A write; without bytes, a truncation to the offset.
    struct Change
    {
        std::size_t offset = 0;
        std::optional<std::string> bytes;
    };
    struct File
    {
        std::string synced;
        std::vector<Change> unsynced;
    };
    using Folder = std::map<std::string, std::shared_ptr<File>>;
    /// The system's functions of the file, and a copy with some functions replaced.
    struct OpenFile : sqlite3_io_methods
    {
        UnsyncedDisk* disk = nullptr;
        const sqlite3_io_methods* system = nullptr;
        std::shared_ptr<File> file = {};
        bool syncsFolder = false;
    };

    static UnsyncedDisk& Of(sqlite3_vfs* system);
    static OpenFile& Of(sqlite3_file* file);
    static int Open(sqlite3_vfs* system, const char* path, sqlite3_file* file, int flags, int* outFlags);
    static int Delete(sqlite3_vfs* system, const char* path, int syncsFolder);
    static int Close(sqlite3_file* file);
    static int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset);
    static int Truncate(sqlite3_file* file, sqlite3_int64 size);
    static int Sync(sqlite3_file* file, int flags);

    void Track(const char* path, sqlite3_file* file, int flags);
    [[nodiscard]] bool IsAllowed();
    static void Apply(std::string& content, const Change& change);
    void Restart(std::minstd_rand* chance);
    static std::string ContentAfterCut(const File& file, std::minstd_rand* chance);

    sqlite3_vfs* m_system;
    sqlite3_vfs m_own;
    Folder m_present;
    Folder m_synced;
    std::map<sqlite3_file*, OpenFile> m_open;
    std::optional<std::size_t> m_changesLeft;
    std::optional<std::size_t> m_writesLeft;
    bool m_isCut = false;
};
