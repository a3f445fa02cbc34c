// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/BlockIndex.h"

#include "messages/Address.h"
#include "messages/MailAddress.h"
#include "secrets/Keys.h"

namespace beacond {

std::string BlockIndex(const Key& lookup, const Address& address)
{
    const bool isMail = address.kind == AddressKind::Mail;
    return lookup.Hash("blocked " + std::string(NameOf(address.kind)),
                       isMail ? MailboxForBlocks(address.text) : address.text);
}

} // namespace beacond
