// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallTables.h"
#include "places/TextTable.h"

#include <gtest/gtest.h>

#include <regex>

TEST(ShippedTable, Rows_areTheProgramsOwnPlaces)
{
    std::string expected;
    const std::string settings = Read(SHIPPED_SETTINGS);
    const std::regex place(R"re(<(\w+) atlas_id="([^"]*)" city="([^"]*)" state="([^"]*)")re");
    for (std::sregex_iterator row(settings.begin(), settings.end(), place); row != std::sregex_iterator();
         ++row)
        expected +=
            (*row)[1].str() + " " + (*row)[2].str() + " " + (*row)[3].str() + " " + (*row)[4].str() + "\n";

    std::string found;
    beacond::TextTable(std::filesystem::path(PLACES_DATA) / "shipped.tsv")
        .ForEach([&found](beacond::TextTable::Columns row) {
            ASSERT_EQ(row.size(), 5U);
            found.append(row[0]).append(" ").append(row[1]).append(" ").append(row[3]).append(" ").append(
                row[4]);
            found.append("\n");
        });
    EXPECT_EQ(found, expected) << "run server/places/make_table";
    EXPECT_FALSE(found.empty());
}
