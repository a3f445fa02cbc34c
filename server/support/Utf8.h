// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace beacond {

/// The length in bytes, 1 to 4, of the well-formed UTF-8 sequence at the start of @p text; 0 if the text is
/// empty, or the sequence is truncated, overlong, a surrogate or above U+10FFFF.
[[nodiscard]] std::size_t Utf8SequenceLength(std::string_view text);

/// Whether all of @p text is well-formed UTF-8. The empty text is.
[[nodiscard]] bool IsValidUtf8(std::string_view text);

/// Converts @p bytes from windows-1252 to UTF-8. The five undefined bytes (81, 8D, 8F, 90, 9D) become U+FFFD.
[[nodiscard]] std::string FromWindows1252(std::string_view bytes);

} // namespace beacond
