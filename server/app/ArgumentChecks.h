// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace beacond {

struct Address;
struct Strip;

/// An argument or an input of the command line is unusable; the text gives the reason.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The checks of single arguments return a description of the expected form, or an empty text for a valid
// argument.

[[nodiscard]] std::string CheckVersionNumber(const std::string& text);
/// A day of the calendar such as "2027-03-10".
[[nodiscard]] std::string CheckDay(const std::string& text);
/// Checks the form of a country code only.
[[nodiscard]] std::string CheckCountry(const std::string& text);
[[nodiscard]] std::string CheckPageAddress(const std::string& text);

/// Checks the size, the characters and the order of the days, but not the HTML. Throws UsageError.
void RequireStrip(const Strip& strip);
/// The address in the normalised form that sign-ups are stored by. "-" stands for a line of standard input:
/// other accounts can see the arguments. Throws UsageError for a text that is no address of any kind.
[[nodiscard]] Address RequireAddress(const std::string& argument);

} // namespace beacond
