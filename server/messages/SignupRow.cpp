// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/SignupRow.h"

#include "messages/BlockIndex.h"
#include "messages/MailAddress.h"
#include "messages/Signups.h"
#include "secrets/Keys.h"

namespace beacond {

namespace {

constexpr std::int64_t kCodeLifetime = 30L * 60;
std::string LimitIndexOf(const Key& index, const Address& address)
{
    return address.kind == AddressKind::Mail ? index.Hash("mail address", MailboxForLimits(address.text))
                                             : AddressIndex(index, address);
}

} // namespace

std::string GroupIndexOf(const Key& index, const Address& address)
{
    switch (address.kind) {
    case AddressKind::Mail:
        return index.Hash("mail domain", RegistrableDomainOf(address.text));
    case AddressKind::Sms:
        return index.Hash("number range", address.text.substr(0, address.text.size() - 4));
    case AddressKind::Ntfy:
        break;
    }
    return {};
}

Signup SignupOf(const Keys& keys, const Address& address, Road road, std::string codeHash)
{
    return {.kind = std::string(NameOf(address.kind)),
            .sealedAddress = keys.address.Seal(address.text),
            .addressIndex = AddressIndex(keys.index, address),
            .codeHash = std::move(codeHash),
            .lifetime = kCodeLifetime,
            .consentSource = std::string(NameOf(road)),
            .consentText = std::string(road == Road::Form ? kConsentWords : kTestConsentWords),
            .domainIndex = GroupIndexOf(keys.index, address),
            .limitIndex = LimitIndexOf(keys.index, address),
            .blockIndex = BlockIndex(keys.lookup, address)};
}

} // namespace beacond
