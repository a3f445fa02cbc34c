// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/Importer.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// A row of a table of places, with the columns that the tests use.
struct PlaceLine
{
    std::string id = "1";
    std::string name = "Springfield";
    std::string aliases = "";
    std::string latitude = "39.8";
    std::string longitude = "-89.64";
    std::string country = "US";
    std::string division = "IL";
    std::string population = "1000";
    std::string zone = "America/Chicago";
    std::string district = "";
    std::string elevation = "";
    std::string surface = "";

    [[nodiscard]] std::string Text() const
    {
        std::string text = id;
        for (const std::string& column : {name, std::string(), aliases, latitude, longitude, std::string("P"),
                                          std::string("PPL"), country, std::string(), division, district,
                                          std::string(), std::string(), population, elevation, surface, zone})
            text.append("\t").append(column);
        return text + "\t\n";
    }
};

/// The tables of an import; a test replaces the tables that it is about.
struct SmallTables
{
    std::string places = {};
    std::string divisions =
        "US.IL\tIllinois\nUS.TX\tTexas\nUS.IL.167\tSangamon County\nUS.IL.031\tCook County\n";
    std::string postal = {};
    std::string regions =
        "SA\tSA\tSaudi Arabia\nUS\tUS\tUnited States\nUS-IL\tUS.IL\tIllinois\nUS-TX\tUS.TX\tTexas\n"
        "IL\tIL\tIsrael\nPS\tPS\tPalestine\nDE\tDE\tGermany\nAX\tAX\tÅland Islands\n";
    std::string overlay = {};
    std::string shipped = {};

    [[nodiscard]] static beacond::ImportSources Sources(const TemporaryFolder& folder)
    {
        return {folder / "places.tsv",  folder / "divisions.tsv", folder / "postal.tsv",
                folder / "regions.tsv", folder / "overlay.tsv",   folder / "shipped.tsv"};
    }
    /// Writes the tables and imports them, with the dumps, to `folder / "places.bin"`.
    beacond::ImportReport Import(const TemporaryFolder& folder,
                                 const std::vector<std::filesystem::path>& dumps = {}) const
    {
        Write(folder / "places.tsv", places);
        Write(folder / "divisions.tsv", divisions);
        Write(folder / "postal.tsv", postal);
        Write(folder / "regions.tsv", regions);
        Write(folder / "overlay.tsv", overlay);
        Write(folder / "shipped.tsv", shipped);
        beacond::ImportSources sources = Sources(folder);
        sources.dumps = dumps;
        return beacond::ImportPlaces(sources, folder / "places.bin");
    }
};

/// The numbers of skipped rows by their reasons.
[[nodiscard]] inline std::map<std::string, std::size_t> SkippedRowsOf(const beacond::ImportReport& report)
{
    std::map<std::string, std::size_t> rows;
    for (const auto& [reason, skipped] : report.skipped)
        rows.emplace(reason, skipped.rows);
    return rows;
}

/// Tables with two places of one name, a name in another script, a postal code and a shipped place.
[[nodiscard]] inline SmallTables TablesOfEachKind()
{
    return {.places = PlaceLine{}.Text() + PlaceLine{.id = "2", .latitude = "32.1", .division = "TX"}.Text() +
                      PlaceLine{.id = "3", .name = "Riyadh", .aliases = "الرياض", .country = "SA"}.Text(),
            .postal = "US\t62701\t\t\t\t\t\t\t\t39.8\t-89.6\t\n",
            .shipped = "Riyadh\tSA-Riyadh\t3\tRiyadh\tSaudi Arabia\n"};
}
