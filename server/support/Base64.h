// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// @p bytes in Base64 (RFC 4648, section 4) on one line, padded.
[[nodiscard]] std::string EncodeBase64(std::string_view bytes);

/// The bytes of a padded Base64 text. Nothing if it holds any other character, white space included, has
/// another length than a multiple of four, or is not the text that EncodeBase64 makes of these bytes.
[[nodiscard]] std::optional<std::string> DecodeBase64(std::string_view text);

/// @p bytes in the alphabet that is safe in an address (RFC 4648, section 5), without padding.
[[nodiscard]] std::string EncodeBase64Url(std::string_view bytes);

/// The bytes of a text made by EncodeBase64Url; nothing for any other text, so that no two texts stand for
/// the same bytes.
[[nodiscard]] std::optional<std::string> DecodeBase64Url(std::string_view text);

} // namespace beacond
