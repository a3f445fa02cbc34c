// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/KeyReplacement.h"

#include "messages/Address.h"
#include "secrets/KeyFolder.h"
#include "store/Store.h"

namespace beacond {

namespace {

AddressKind KindOf(const StoredAddress& stored)
{
    for (const AddressKind kind : {AddressKind::Mail, AddressKind::Sms, AddressKind::Ntfy}) {
        if (NameOf(kind) == stored.kind) {
            return kind;
        }
    }
    throw StoreError("an address of the store is of an unknown kind");
}

} // namespace

std::int64_t ReplaceKeys(Store& store, const std::filesystem::path& folder)
{
    const auto recorded = [&store](const char* name) { return store.KeyCheck(name); };
    const Keys former = Keys::FromExistingFolder(folder);
    const Keys next = WriteNewKeys(folder);
    std::int64_t count = 0;
    const auto replace = [&](const StoredAddress& stored) {
        const Address address{KindOf(stored), former.address.Unseal(stored.sealedAddress)};
        ++count;
        return StoredAddress{stored.kind, next.address.Seal(address.text), AddressIndex(next.index, address)};
    };
    const auto& [address, index] = kReplaceableKeys;
    try {
        store.ReplaceAddresses(replace,
                               {{address, next.address.CheckHash()}, {index, next.index.CheckHash()}});
    } catch (...) {
        UseRecordedKeys(folder, recorded);
        throw;
    }
    UseRecordedKeys(folder, recorded);
    return count;
}

} // namespace beacond
