// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace beacond {

/// Whether a request can contain the text without escapes: one or more of A-Z a-z 0-9 . _ ~ - only.
[[nodiscard]] bool IsToken(std::string_view text);

/// Whether the text can be shown: not empty, valid UTF-8 without control characters.
[[nodiscard]] bool IsText(std::string_view text);

/// Whether the program can store a place under this key: an ASCII name of an XML element that the program's
/// settings do not use themselves.
[[nodiscard]] bool IsPlaceKey(std::string_view text);

} // namespace beacond
