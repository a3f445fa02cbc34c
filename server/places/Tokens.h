// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace beacond {

/// Whether a request can carry the text without escapes: at least one of A-Z a-z 0-9 . _ ~ - and nothing
/// else.
[[nodiscard]] bool IsToken(std::string_view text);

/// Whether the program can keep a place under this key: an ASCII name of an XML element, and none of the
/// words with which the program's settings have a meaning of their own.
[[nodiscard]] bool IsPlaceKey(std::string_view text);

} // namespace beacond
