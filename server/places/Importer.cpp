// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Importer.h"

#include "places/Arrangement.h"
#include "places/Dumps.h"
#include "places/FileContents.h"
#include "places/Gazetteer.h"
#include "places/PlacesError.h"
#include "places/PostalJoin.h"
#include "places/TextTable.h"

namespace beacond {

ImportSources ImportSources::InFolder(const std::filesystem::path& folder)
{
    return {folder / "places.tsv.xz", folder / "divisions.tsv.xz", folder / "postal.tsv.xz",
            folder / "regions.tsv",   folder / "overlay.tsv",      folder / "shipped.tsv"};
}

ImportReport ImportPlaces(const ImportSources& sources, const std::filesystem::path& out)
{
    ImportReport report;
    const Dumps dumps(sources.dumps, report);
    Gazetteer gazetteer = ReadGazetteer(sources, dumps, report);
    if (gazetteer.places.empty())
        throw PlacesError(sources.places.string() + ": no usable place in it");
    SortPlaces(gazetteer);
    FileContents contents;
    ArrangePlaces(gazetteer, contents);
    ArrangeNames(gazetteer, contents);
    JoinPostalCodes(TextTable(sources.postal), TextTable(sources.overlay), dumps, gazetteer, contents,
                    report);
    WritePlacesFile(contents, out);
    report.places = contents.ids.size();
    report.names = contents.names.size();
    report.scopes = contents.scopes.size();
    return report;
}

} // namespace beacond
