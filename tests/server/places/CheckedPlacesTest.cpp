// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RealPlaces.h"
#include "places/TextTable.h"
#include "places/ZoneOffset.h"
#include "server/Files.h"

#include <cstdlib>
#include <regex>

namespace {

using namespace std::chrono_literals;
constexpr std::chrono::sys_seconds kJune = std::chrono::sys_days(2025y / 6 / 1);
// The checked coordinates are those of a centre, to a tenth of a degree, and the centre of a large city is a
// matter of opinion.
constexpr double kCentre = 0.2;

double Number(std::string_view text)
{
    return std::strtod(std::string(text).c_str(), nullptr);
}

/// Expects the coordinates, in degrees, and the standard offset, in minutes.
void ExpectAt(const beacond::Place& place, double latitude, double longitude, double minutes)
{
    EXPECT_NEAR(place.latitude, latitude, kCentre) << place.city;
    EXPECT_NEAR(place.longitude, longitude, kCentre) << place.city;
    const auto offset = beacond::StandardOffset(place.timeZone, kJune);
    ASSERT_TRUE(offset) << place.city;
    EXPECT_EQ(static_cast<double>(offset->count()), minutes) << place.city;
}

} // namespace

TEST_F(RealPlaces, CheckedRows_firstOfTheirList_areAtTheirCoordinatesAndZone)
{
    std::size_t rows = 0;
    beacond::TextTable(std::filesystem::path(PLACES_TESTS) / "checked.tsv")
        .ForEach([&rows](beacond::TextTable::Columns row) {
            ASSERT_EQ(row.size(), 6U);
            ++rows;
            const auto matches = s_places->Search(row[0], row[1], 1);
            ASSERT_EQ(matches.size(), 1U) << row[0] << " " << row[1];
            const auto place = s_places->ByAtlasId(matches.front().atlasId);
            ASSERT_TRUE(place) << row[1];
            EXPECT_EQ(place->city, row[2]) << row[0] << " " << row[1];
            ExpectAt(*place, Number(row[3]), Number(row[4]), Number(row[5]));
        });
    EXPECT_GE(rows, 110U) << "together with the shipped places 200";
}

TEST_F(RealPlaces, ShippedPlaces_areAtTheCoordinatesAndZoneOfTheProgram)
{
    const std::string settings = Read(SHIPPED_SETTINGS);
    const std::regex element(
        R"re(atlas_id="([^"]*)"[^>]* longitude_final="([^"]*)"[^>]* latitude_final="([^"]*)" time_zone2="([^"]*)")re");
    std::size_t rows = 0;
    for (std::sregex_iterator row(settings.begin(), settings.end(), element); row != std::sregex_iterator();
         ++row, ++rows) {
        const auto place = s_places->ByAtlasId((*row)[1].str());
        ASSERT_TRUE(place) << (*row)[1];
        // Morocco has an hour less since September 2026.
        const double hours = Number((*row)[4].str()) + (place->country == "MA" ? 1.0 : 0.0);
        ExpectAt(*place, Number((*row)[3].str()), Number((*row)[2].str()), 60.0 * hours);
    }
    EXPECT_GE(rows, 90U);
}
