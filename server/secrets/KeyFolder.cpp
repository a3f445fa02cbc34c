// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "secrets/KeyFolder.h"

#include "support/DurableFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace beacond {

namespace {

std::filesystem::path NewFile(const std::filesystem::path& folder, const char* name)
{
    return folder / (std::string(name) + ".new");
}

// Another process may have renamed or deleted the file meanwhile, with the same result.
void RequireDone(int result, const std::filesystem::path& file)
{
    if (result != 0 && errno != ENOENT) {
        throw KeyError(file.string() + ": " + std::strerror(errno));
    }
}

} // namespace

KeyFolderLock::KeyFolderLock(const std::filesystem::path& folder, For purpose)
{
    if (const std::error_code error = MakePrivateFolder(folder)) {
        throw KeyError(folder.string() + ": " + error.message());
    }
    m_descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isReplacing = purpose == For::Replacing;
    if (m_descriptor < 0 || ::flock(m_descriptor, (isReplacing ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) {
        const bool isTaken = m_descriptor >= 0 && errno == EWOULDBLOCK;
        const std::string reason = !isTaken      ? std::strerror(errno)
                                   : isReplacing ? "the keys are in use; stop the service first"
                                                 : "the keys are being replaced; try again in a minute";
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
        throw KeyError(folder.string() + ": " + reason);
    }
}

KeyFolderLock::~KeyFolderLock()
{
    ::close(m_descriptor);
}

Keys WriteNewKeys(const std::filesystem::path& folder)
{
    Keys keys = Keys::FromFolder(folder);
    const auto& [address, index] = kReplaceableKeys;
    keys.address = Key::FromFile(NewFile(folder, address));
    keys.index = Key::FromFile(NewFile(folder, index));
    return keys;
}

bool HasNewKeys(const std::filesystem::path& folder)
{
    return std::any_of(kReplaceableKeys.begin(), kReplaceableKeys.end(), [&folder](const char* name) {
        std::error_code ignored;
        return std::filesystem::exists(NewFile(folder, name), ignored);
    });
}

void UseRecordedKeys(const std::filesystem::path& folder,
                     const std::function<std::string(const char* name)>& recordedCheck)
{
    for (const char* const name : kReplaceableKeys) {
        const std::filesystem::path file = NewFile(folder, name);
        if (!std::filesystem::exists(file)) {
            continue;
        }
        const bool isRecorded = Key::FromExistingFile(file).CheckHash() == recordedCheck(name);
        RequireDone(isRecorded ? std::rename(file.c_str(), (folder / name).c_str()) : ::unlink(file.c_str()),
                    file);
    }
    if (!SyncFolder(folder)) {
        throw KeyError(folder.string() + ": " + std::strerror(errno));
    }
}

} // namespace beacond
