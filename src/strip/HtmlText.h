// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// The characters of a page. All texts are UTF-8.

inline constexpr std::string_view kHtmlSpaces = " \t\n\f\r";

/// In lower case, ASCII letters only: HTML compares names so.
[[nodiscard]] char LowerCase(char character);
[[nodiscard]] std::string LowerCase(std::string_view text);

/// The text of a page, ready to stand between tags. Numeric references are normalised, named ones stay as
/// they are.
[[nodiscard]] std::string SafeText(std::string_view text);

/// The value of an attribute, with numeric references and those to & < > " ' replaced by their characters: an
/// address needs no others.
[[nodiscard]] std::string AttributeValue(std::string_view source);

/// @p value, ready to stand inside the double quotes of an attribute.
[[nodiscard]] std::string Escaped(std::string_view value);

/// @p html with a space for each character that is no text: controls, and the marks of the text layout.
[[nodiscard]] std::string WithoutLayoutMarks(const std::string& html);
