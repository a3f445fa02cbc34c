// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The characters of a page. All texts are UTF-8.

inline constexpr std::string_view kHtmlSpaces = " \t\n\f\r";

/// Converts only ASCII letters to lower case, as HTML does to compare names.
[[nodiscard]] char LowerCase(char character);
[[nodiscard]] std::string LowerCase(std::string_view text);

/// The length in UTF-16: the limits of the strip count letters, not their bytes.
[[nodiscard]] std::size_t Utf16Units(std::string_view text);

/// The text of a page, escaped for use between tags. Numeric references are normalised, named ones are kept.
[[nodiscard]] std::string SafeText(std::string_view text);

/// The value of an attribute, with numeric references and those to & < > " ' replaced by their characters: an
/// address needs no others.
[[nodiscard]] std::string AttributeValue(std::string_view source);

/// @p value, escaped for use inside the double quotes of an attribute.
[[nodiscard]] std::string Escaped(std::string_view value);

/// @p html with a space in place of each control character and each mark of Qt's text layout.
[[nodiscard]] std::string WithoutLayoutMarks(const std::string& html);
