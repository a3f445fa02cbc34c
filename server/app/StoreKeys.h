// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"
#include "secrets/Keys.h"

namespace beacond {

class Store;

/// The keys, read or created, after completing an interrupted replacement of keys. The caller holds a
/// KeyFolderLock. Throws KeyError or StoreError.
[[nodiscard]] Keys OpenKeys(const Settings& settings);
/// The same, but throws KeyError if one is missing.
[[nodiscard]] Keys OpenExistingKeys(const Settings& settings);

/// Throws KeyError if the store was written with other keys: the service could neither read nor find its
/// addresses.
void RequireKeysOf(Store& store, const Keys& keys, const std::filesystem::path& folder);

} // namespace beacond
