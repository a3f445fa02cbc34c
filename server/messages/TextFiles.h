// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/IncomingText.h"

#include <optional>
#include <string_view>

namespace beacond {

/// A text message in the inbox of gammu-smsd, service "files". Nothing for a file of another kind, a later
/// part of a long message, or a sender that is no international number.
/// @param name "IN20261122_203045_00_+442079460958_00.txt"
/// @param content UTF-8, windows-1252, or UTF-16 after a byte order mark
[[nodiscard]] std::optional<IncomingText> ReadGammuFile(std::string_view name, std::string_view content);

/// A text message in the folder "incoming" of smstools. Nothing for a malformed file, a binary message, a
/// status report, or a sender that is no international number.
[[nodiscard]] std::optional<IncomingText> ReadSmstoolsFile(std::string_view content);

} // namespace beacond
