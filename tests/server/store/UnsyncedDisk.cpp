// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/store/UnsyncedDisk.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

constexpr std::size_t kPage = 4096;

bool Happens(std::minstd_rand* chance)
{
    return chance != nullptr && std::bernoulli_distribution()(*chance);
}

} // namespace

UnsyncedDisk::UnsyncedDisk()
    : m_system(sqlite3_vfs_find(nullptr))
    , m_own(*m_system)
{
    m_own.zName = "unsynced";
    m_own.pAppData = this;
    m_own.xOpen = &Open;
    m_own.xDelete = &Delete;
    sqlite3_vfs_register(&m_own, 1);
}

UnsyncedDisk::~UnsyncedDisk()
{
    sqlite3_vfs_unregister(&m_own);
    sqlite3_vfs_register(m_system, 1);
}

UnsyncedDisk& UnsyncedDisk::Of(sqlite3_vfs* system)
{
    return *static_cast<UnsyncedDisk*>(system->pAppData);
}

UnsyncedDisk::OpenFile& UnsyncedDisk::Of(sqlite3_file* file)
{
    const auto* const open = static_cast<const OpenFile*>(file->pMethods);
    return open->disk->m_open.at(file);
}

int UnsyncedDisk::Open(sqlite3_vfs* system, const char* path, sqlite3_file* file, int flags, int* outFlags)
{
    UnsyncedDisk& disk = Of(system);
    const int result = disk.m_system->xOpen(disk.m_system, path, file, flags, outFlags);
    constexpr int kKept = SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL;
    if (result == SQLITE_OK && (flags & kKept) != 0) {
        disk.Track(path, file, flags);
    }
    return result;
}

void UnsyncedDisk::Track(const char* path, sqlite3_file* file, int flags)
{
    std::shared_ptr<File>& present = m_present[path];
    if (present == nullptr) {
        present = std::make_shared<File>();
    }
    // Like SQLite's own file system: the first sync of a log that may be new also syncs its name.
    const bool mayBeNew = (flags & SQLITE_OPEN_CREATE) != 0 && (flags & SQLITE_OPEN_MAIN_DB) == 0;
    OpenFile& open = m_open[file];
    open = {*file->pMethods, this, file->pMethods, present, mayBeNew};
    open.xClose = &Close;
    open.xWrite = &Write;
    open.xTruncate = &Truncate;
    open.xSync = &Sync;
    file->pMethods = &open;
}

bool UnsyncedDisk::IsAllowed()
{
    if (m_changesLeft == 0U) {
        m_isCut = true;
        return false;
    }
    if (m_changesLeft) {
        --*m_changesLeft;
    }
    return true;
}

int UnsyncedDisk::Delete(sqlite3_vfs* system, const char* path, int syncsFolder)
{
    UnsyncedDisk& disk = Of(system);
    if (!disk.IsAllowed()) {
        return SQLITE_IOERR_DELETE;
    }
    const int result = disk.m_system->xDelete(disk.m_system, path, 0);
    if (result == SQLITE_OK) {
        disk.m_present.erase(path);
        if (syncsFolder != 0) {
            disk.m_synced = disk.m_present;
        }
    }
    return result;
}

int UnsyncedDisk::Close(sqlite3_file* file)
{
    OpenFile& open = Of(file);
    file->pMethods = open.system;
    open.disk->m_open.erase(file);
    return file->pMethods->xClose(file);
}

int UnsyncedDisk::Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset)
{
    OpenFile& open = Of(file);
    UnsyncedDisk& disk = *open.disk;
    if (disk.m_writesLeft == 0U) {
        return SQLITE_FULL;
    }
    if (disk.m_writesLeft) {
        --*disk.m_writesLeft;
    }
    if (!disk.IsAllowed()) {
        return SQLITE_IOERR_WRITE;
    }
    open.file->unsynced.push_back(
        {static_cast<std::size_t>(offset),
         std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(count))});
    return open.system->xWrite(file, bytes, count, offset);
}

int UnsyncedDisk::Truncate(sqlite3_file* file, sqlite3_int64 size)
{
    OpenFile& open = Of(file);
    UnsyncedDisk& disk = *open.disk;
    if (!disk.IsAllowed()) {
        return SQLITE_IOERR_TRUNCATE;
    }
    open.file->unsynced.push_back({static_cast<std::size_t>(size), std::nullopt});
    return open.system->xTruncate(file, size);
}

int UnsyncedDisk::Sync(sqlite3_file* file, int /*flags*/)
{
    OpenFile& open = Of(file);
    UnsyncedDisk& disk = *open.disk;
    if (!disk.IsAllowed()) {
        return SQLITE_IOERR_FSYNC;
    }
    for (const Change& change : open.file->unsynced) {
        Apply(open.file->synced, change);
    }
    open.file->unsynced.clear();
    if (open.syncsFolder) {
        disk.m_synced = disk.m_present;
        open.syncsFolder = false;
    }
    return SQLITE_OK;
}

void UnsyncedDisk::Apply(std::string& content, const Change& change)
{
    if (!change.bytes) {
        content.resize(change.offset);
        return;
    }
    content.resize(std::max(content.size(), change.offset + change.bytes->size()));
    content.replace(change.offset, change.bytes->size(), *change.bytes);
}

std::string UnsyncedDisk::ContentAfterCut(const File& file, std::minstd_rand* chance)
{
    std::string content = file.synced;
    for (const Change& change : file.unsynced) {
        if (!change.bytes) {
            if (Happens(chance)) {
                Apply(content, change);
            }
            continue;
        }
        const std::size_t end = change.offset + change.bytes->size();
        for (std::size_t from = change.offset; from < end;) {
            const std::size_t to = std::min(end, (from / kPage + 1) * kPage);
            if (Happens(chance)) {
                Apply(content, {from, change.bytes->substr(from - change.offset, to - from)});
            }
            from = to;
        }
    }
    return content;
}

void UnsyncedDisk::Restart()
{
    Restart(nullptr);
}

void UnsyncedDisk::Restart(unsigned seed)
{
    std::minstd_rand chance(seed);
    Restart(&chance);
}

void UnsyncedDisk::Restart(std::minstd_rand* chance)
{
    Folder names = m_present;
    names.insert(m_synced.begin(), m_synced.end());
    Folder kept;
    for (const auto& [path, unused] : names) {
        const Folder& folder = Happens(chance) ? m_present : m_synced;
        std::filesystem::remove(path);
        // Shared memory does not survive a power cut.
        std::filesystem::remove(path + "-shm");
        if (const auto found = folder.find(path); found != folder.end()) {
            const std::string content = ContentAfterCut(*found->second, chance);
            std::ofstream(path, std::ios::binary) << content;
            kept[path] = std::make_shared<File>(File{content, {}});
        }
    }
    m_present = kept;
    m_synced = kept;
    m_changesLeft.reset();
    m_isCut = false;
}
