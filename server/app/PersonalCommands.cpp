// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PersonalCommands.h"

#include "app/PersonalDataText.h"
#include "app/Service.h"
#include "app/StoreKeys.h"
#include "messages/Address.h"
#include "messages/BlockIndex.h"
#include "messages/KeyReplacement.h"
#include "messages/MaskedAddress.h"
#include "secrets/KeyFolder.h"
#include "store/SqliteStore.h"

#include <optional>
#include <ostream>

namespace beacond {

namespace {

// The folder of the keys of an existing store.
const std::filesystem::path& KeyFolder(const Settings& settings)
{
    (void)SqliteStore::ToRead(SqlitePath(settings.store.url));
    return settings.keys.folder;
}

/// The store with its keys, which nothing replaces meanwhile.
struct OpenStore
{
    explicit OpenStore(const Settings& settings, KeyFolderLock::For purpose = KeyFolderLock::For::Using)
        : lock(KeyFolder(settings), purpose)
        , keys(OpenExistingKeys(settings))
        , store(SqlitePath(settings.store.url))
    {
        RequireKeysOf(store, keys, settings.keys.folder);
    }

    KeyFolderLock lock;
    Keys keys;
    SqliteStore store;
};

std::optional<std::int64_t> BlockedSince(const OpenStore& open, const Address& address)
{
    const std::string index = BlockIndex(open.keys.lookup, address);
    for (const BlockedAddress& blocked : open.store.BlockedAddresses()) {
        if (blocked.blockIndex == index) {
            return blocked.since;
        }
    }
    return std::nullopt;
}

} // namespace

void ForgetAddress(const Settings& settings, const Address& address, std::ostream& out)
{
    OpenStore open(settings);
    if (!open.store.Forget(AddressIndex(open.keys.index, address))) {
        throw StoreError("nothing is kept of that address");
    }
    open.store.ClearDeleted();
    out << "The device of " << MaskedAddress(address) << ", its texts and its sign-ups are deleted.\n";
}

void ExportAddress(const Settings& settings, const Address& address, std::ostream& out)
{
    const OpenStore open(settings);
    const PersonalData data = open.store.DataOf(AddressIndex(open.keys.index, address));
    const std::optional<std::int64_t> blocked = BlockedSince(open, address);
    if (!data.device && data.signups.empty() && !blocked) {
        throw StoreError("nothing is kept of that address");
    }
    out << PersonalDataText(address, data, blocked, open.keys.address) << '\n';
}

void BlockAddress(const Settings& settings, const Address& address, std::ostream& out)
{
    OpenStore open(settings);
    const BlockedAddress blocked{BlockIndex(open.keys.lookup, address), std::string(NameOf(address.kind)), 0};
    const bool isNew = open.store.Block(blocked, AddressIndex(open.keys.index, address));
    open.store.ClearDeleted();
    out << MaskedAddress(address) << (isNew ? " is blocked" : " was blocked before")
        << "; its device, its texts and its sign-ups are deleted.\n";
}

void UnblockAddress(const Settings& settings, const Address& address, std::ostream& out)
{
    OpenStore open(settings);
    if (!open.store.Unblock(BlockIndex(open.keys.lookup, address))) {
        throw StoreError("that address is not blocked");
    }
    out << MaskedAddress(address) << " can sign up again.\n";
}

void ListBlockedAddresses(const Settings& settings, std::ostream& out)
{
    constexpr std::size_t kShownBytes = 4;
    for (const BlockedAddress& blocked :
         SqliteStore::ToRead(SqlitePath(settings.store.url)).BlockedAddresses()) {
        out << TimeText(blocked.since) << '\t' << blocked.kind << '\t'
            << HexText(blocked.blockIndex.substr(0, kShownBytes)) << '\n';
    }
}

void ReplaceKeysOfStore(const Settings& settings, std::ostream& out)
{
    OpenStore open(settings, KeyFolderLock::For::Replacing);
    const std::int64_t count = ReplaceKeys(open.store, settings.keys.folder);
    out << "New keys seal " << count << " addresses. Keep a copy of " << settings.keys.folder.string()
        << "; backups of the store from before need the former keys.\n";
}

} // namespace beacond
