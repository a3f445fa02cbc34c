// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StoreKeys.h"

#include "app/Service.h"
#include "secrets/KeyFolder.h"
#include "store/SqliteStore.h"

#include <utility>

namespace beacond {

namespace {

void CompleteReplacement(const Settings& settings)
{
    if (HasNewKeys(settings.keys.folder)) {
        const SqliteStore store(SqlitePathInItsFolder(settings.store.url));
        UseRecordedKeys(settings.keys.folder, [&store](const char* name) { return store.KeyCheck(name); });
    }
}

} // namespace

Keys OpenKeys(const Settings& settings)
{
    CompleteReplacement(settings);
    return Keys::FromFolder(settings.keys.folder);
}

Keys OpenExistingKeys(const Settings& settings)
{
    CompleteReplacement(settings);
    return Keys::FromExistingFolder(settings.keys.folder);
}

void RequireKeysOf(Store& store, const Keys& keys, const std::filesystem::path& folder)
{
    const auto& [identifier, address, index, lookup] = Keys::kFileNames;
    const std::pair<const char*, const Key&> all[] = {
        {identifier, keys.identifier}, {address, keys.address}, {index, keys.index}, {lookup, keys.lookup}};
    for (const auto& [name, key] : all) {
        if (!store.IsWrittenWith(name, key.CheckHash())) {
            throw KeyError((folder / name).string() + ": not the key that the store was written with");
        }
    }
}

} // namespace beacond
