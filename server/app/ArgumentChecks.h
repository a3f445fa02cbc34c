// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace beacond {

struct Strip;

/// An argument or an input of the command line that can't be used; says why.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The checks of single arguments answer what is expected, or an empty text for an argument that can be used.

[[nodiscard]] std::string CheckVersionNumber(const std::string& text);
/// A day of the calendar such as "2027-03-10".
[[nodiscard]] std::string CheckDay(const std::string& text);
/// The form of a country's code only.
[[nodiscard]] std::string CheckCountry(const std::string& text);
[[nodiscard]] std::string CheckPageAddress(const std::string& text);

/// Checks size, characters and the order of the days; the HTML is not read. Throws UsageError.
void RequireStrip(const Strip& strip);
/// The address as sign-ups are stored by it. Throws UsageError for a text that is no mail address.
[[nodiscard]] std::string RequireMailAddress(const std::string& text);

} // namespace beacond
