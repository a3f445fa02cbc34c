// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/ImportReport.h"

#include <filesystem>
#include <vector>

namespace beacond {

/// The tables of an import, plain or compressed (see TableFile).
struct ImportSources
{
    std::filesystem::path places; ///< 19 columns, as in GeoNames' cities500.txt
    /// Code and name, as in GeoNames' admin1CodesASCII.txt and admin2Codes.txt.
    std::filesystem::path divisions;
    std::filesystem::path postal; ///< 12 columns, as in GeoNames' postal codes; the place's name may be empty
    std::filesystem::path regions; ///< the list of countries and states
    std::filesystem::path overlay; ///< corrections
    std::filesystem::path shipped; ///< the places of the program's own list
    /// The operator's own files of GeoNames, of the kinds of Dumps. Places and names of regions are added or
    /// replace those with their id or code, so that each place of the packed table still answers. Alternate
    /// names are added. Postal codes replace all codes of their country.
    std::vector<std::filesystem::path> dumps = {};

    /// The tables of server/places/data.
    [[nodiscard]] static ImportSources InFolder(const std::filesystem::path& folder);
};

/// Makes the places file `out` from the tables. The file replaces an older one as a whole, or not at all; the
/// older one is kept with ".previous" appended to its name. An invalid row is skipped and counted. Throws
/// PlacesError if a table can't be read, a dump is of no known kind, no place remains, the file can't be
/// written, or another import is writing it.
ImportReport ImportPlaces(const ImportSources& sources, const std::filesystem::path& out);

} // namespace beacond
