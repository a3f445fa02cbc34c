// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/ImportReport.h"

#include <filesystem>

namespace beacond {

/// The tables of an import. Each is plain text, or compressed if its name ends in ".xz".
struct ImportSources
{
    std::filesystem::path places; ///< 19 columns, as in GeoNames' cities500.txt
    /// Code and name, as in GeoNames' admin1CodesASCII.txt and admin2Codes.txt.
    std::filesystem::path divisions;
    std::filesystem::path postal; ///< 12 columns, as in GeoNames' postal codes; the place's name may be empty
    std::filesystem::path regions; ///< the list of countries and states
    std::filesystem::path overlay; ///< corrections
    std::filesystem::path shipped; ///< the places of the program's own list

    /// The tables of server/places/data.
    [[nodiscard]] static ImportSources InFolder(const std::filesystem::path& folder);
};

/// Makes the places file `out` from the tables. The file replaces an older one as a whole, or not at all; the
/// older one is kept with ".previous" appended to its name. An invalid row is skipped and counted. Throws
/// PlacesError if a table can't be read, no place remains, or the file can't be written.
ImportReport ImportPlaces(const ImportSources& sources, const std::filesystem::path& out);

} // namespace beacond
