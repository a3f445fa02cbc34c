// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>

namespace beacond {

class Store;

/// Replaces the keys that seal and find addresses: seals each address of the store again, in one
/// transaction. The caller holds KeyFolderLock::For::Replacing. After a crash at any time UseRecordedKeys
/// completes or undoes the replacement. Throws KeyError or StoreError; then the former keys stay in use,
/// unless only the renaming of the files has failed.
/// @return the number of sealed addresses
std::int64_t ReplaceKeys(Store& store, const std::filesystem::path& folder);

} // namespace beacond
