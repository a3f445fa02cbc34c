// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace beacond {

/// Writes all bytes, also when the kernel takes them in parts. False if it fails; errno has the reason.
[[nodiscard]] bool WriteAll(int descriptor, std::string_view bytes);

/// Waits until the names in a folder are on the disk: without it a power cut could undo a rename. False if it
/// fails; errno has the reason.
[[nodiscard]] bool SyncFolder(const std::filesystem::path& folder);

/// Makes a missing folder, readable by its owner alone. A folder that exists stays as it is.
[[nodiscard]] std::error_code MakePrivateFolder(const std::filesystem::path& folder);

} // namespace beacond
