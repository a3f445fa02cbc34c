// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace beacond {

/// Writes all bytes, also if the kernel accepts them in parts. False on failure; errno has the reason.
[[nodiscard]] bool WriteAll(int descriptor, std::string_view bytes);

/// Syncs a folder, so that a power cut can't undo a rename in it. False on failure; errno has the reason.
[[nodiscard]] bool SyncFolder(const std::filesystem::path& folder);

/// Creates a missing folder, accessible only to its owner. An existing folder stays unchanged.
[[nodiscard]] std::error_code MakePrivateFolder(const std::filesystem::path& folder);

} // namespace beacond
