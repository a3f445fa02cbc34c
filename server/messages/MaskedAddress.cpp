// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MaskedAddress.h"

#include "messages/Address.h"

namespace beacond {

namespace {

constexpr const char* kEllipsis = "...";

} // namespace

std::string MaskedAddress(const Address& address)
{
    const std::string& text = address.text;
    switch (address.kind) {
    case AddressKind::Mail:
        return text.substr(0, 1) + kEllipsis + text.substr(text.find('@'));
    case AddressKind::Sms:
        return text.substr(0, 3) + kEllipsis + text.substr(text.size() - 2);
    case AddressKind::Ntfy:
        break;
    }
    // Who knows the topic reads its messages.
    return text.substr(0, text.rfind('/') + 1) + kEllipsis;
}

} // namespace beacond
