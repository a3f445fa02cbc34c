// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace beacond {

struct Findings;
struct Settings;

/// Checks the channels, the files of their secrets and the operator's address, without creating or sending
/// anything.
/// @param isConnecting also connects to the server of each channel, and ends the connection at once
void CheckMessages(const Settings& settings, bool isConnecting, Findings& findings);

} // namespace beacond
