// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace beacond {

/// @p bytes in Base64 (RFC 4648, section 4) on one line, padded.
[[nodiscard]] std::string EncodeBase64(std::string_view bytes);

} // namespace beacond
