// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace beacond {

class Dumps;
class TextTable;
struct FileContents;
struct Gazetteer;
struct ImportReport;

/// Fills the postal codes, each with the places that a user with that code may mean: the place that the table
/// names, then the places around the code's point, where a large place counts from farther away. The
/// codes of a country in the operator's tables replace all those of that country in the packed table and the
/// overlay. The gazetteer is in the file's order.
void JoinPostalCodes(const TextTable& packed, const TextTable& overlay, const Dumps& dumps,
                     const Gazetteer& gazetteer, FileContents& contents, ImportReport& report);

/// Whether the country, by its two letters, has ZIP codes: the United States and their territories.
[[nodiscard]] bool HasZipCodes(std::string_view country);

/// The postal code in the form that is compared: letters and digits only, in capitals.
[[nodiscard]] std::string NormalPostalCode(std::string_view code);

} // namespace beacond
