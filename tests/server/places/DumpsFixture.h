// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SmallTables.h"
#include "places/Places.h"
#include "places/PlacesError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using beacond::ImportReport;
using beacond::Places;

/// Imports small tables, and files of the operator with these contents.
class DumpsTest : public testing::Test
{
protected:
    ImportReport Import(const std::vector<std::string>& contents)
    {
        std::vector<std::filesystem::path> dumps;
        for (std::size_t i = 0; i < contents.size(); ++i) {
            dumps.push_back(folder / ("dump" + std::to_string(i)));
            Write(dumps.back(), contents[i]);
        }
        ImportReport report = tables.Import(folder, dumps);
        places = Places::Open(folder / "places.bin");
        return report;
    }
    std::string ReasonToRefuse(const std::string& content)
    {
        try {
            (void)Import({content});
            return "";
        } catch (const beacond::PlacesError& error) {
            return std::string(error.what()).substr((folder / "dump0: ").string().size());
        }
    }
    std::vector<std::string> Cities(const char* state, const char* letters) const
    {
        return CitiesOf(places->Search(state, letters, 9));
    }
    std::vector<std::string> CitiesOfCode(const char* code) const { return CitiesOf(places->ByZip(code)); }

    static std::vector<std::string> CitiesOf(const std::vector<beacond::Match>& matches)
    {
        std::vector<std::string> cities;
        for (const beacond::Match& match : matches)
            cities.push_back(match.city);
        return cities;
    }

    const TemporaryFolder folder;
    SmallTables tables = {.places = PlaceLine{}.Text()};
    std::shared_ptr<const Places> places;
};

/// A row of a table of postal codes. The point is latitude, tab, longitude.
inline std::string PostalLine(const char* country, const char* code, const char* name, const char* point)
{
    return std::string(country) + "\t" + code + "\t" + name + "\t\t\t\t\t\t\t" + point + "\t4\n";
}
