// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>

namespace beacond {

struct Address;
struct Settings;

// The operator's commands about personal data, beside a running service. Each prints what it has done, and
// throws StoreError, KeyError if it can't be done. None creates a missing store or a missing key.

/// Deletes all that is kept of an address, except that it is blocked.
void ForgetAddress(const Settings& settings, const Address& address, std::ostream& out);
/// Prints all that is kept of an address, as JSON.
void ExportAddress(const Settings& settings, const Address& address, std::ostream& out);
/// Deletes all that is kept of an address, and refuses its sign-ups.
void BlockAddress(const Settings& settings, const Address& address, std::ostream& out);
void UnblockAddress(const Settings& settings, const Address& address, std::ostream& out);
/// Prints the kind, the day and a part of the hash of each blocked address; the addresses are not stored.
void ListBlockedAddresses(const Settings& settings, std::ostream& out);
/// Replaces the keys of addresses. The service must not run.
void ReplaceKeysOfStore(const Settings& settings, std::ostream& out);

} // namespace beacond
