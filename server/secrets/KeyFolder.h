// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "secrets/Keys.h"

#include <functional>

namespace beacond {

/// A lock on the folder of the keys, until it is destroyed or the process ends. Many processes may use the
/// keys; the one that replaces them must be alone.
class KeyFolderLock final
{
public:
    enum class For { Using, Replacing };

    /// Creates a missing folder. Does not wait: throws KeyError if another process has a lock that excludes
    /// this one.
    KeyFolderLock(const std::filesystem::path& folder, For purpose);
    ~KeyFolderLock();
    KeyFolderLock(const KeyFolderLock&) = delete;
    KeyFolderLock& operator=(const KeyFolderLock&) = delete;

private:
    int m_descriptor = -1;
};

/// The keys that can be replaced: all that they have sealed or hashed can be read and written again.
inline constexpr std::array kReplaceableKeys = {"address.key", "index.key"};

/// The steps of replacing the keys, each on the disk when it returns: WriteNewKeys makes the files
/// NAME.new, then the store is changed and records the new keys, then UseRecordedKeys renames the files.
/// After a crash UseRecordedKeys alone completes or undoes the rest.

/// @return the keys of the folder, with new ones in place of the replaceable keys. Throws KeyError.
[[nodiscard]] Keys WriteNewKeys(const std::filesystem::path& folder);

/// Whether a replacement of the keys has not been completed.
[[nodiscard]] bool HasNewKeys(const std::filesystem::path& folder);

/// Each file NAME.new replaces the file NAME if the store was written with its key, otherwise it is deleted.
/// Several processes may do this at once. Throws KeyError.
/// @param recordedCheck the hash of a key by its name, as the store has recorded it; empty for none
void UseRecordedKeys(const std::filesystem::path& folder,
                     const std::function<std::string(const char* name)>& recordedCheck);

} // namespace beacond
