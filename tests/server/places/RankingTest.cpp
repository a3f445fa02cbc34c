// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RealPlaces.h"
#include "places/Fold.h"
#include "places/TextTable.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t kShownRows = 10;

/// A city that a user looks for.
struct WantedCity
{
    std::string scope;
    std::string name; ///< in the user's spelling
    std::string atlasId;
};

/// The share of cities, in per cent, that a list has among its first ten rows and in its first row.
struct Standing
{
    double ten = 0.0;
    double first = 0.0;
};

std::string FirstLetters(const std::string& name, std::size_t letters)
{
    std::string typed = beacond::Fold(name);
    while (beacond::CountLetters(typed) > letters)
        typed.pop_back();
    return typed;
}

/// The standing of the cities by the first `letters` letters of their names.
Standing StandingOf(const beacond::Places& places, const std::vector<WantedCity>& cities, std::size_t letters)
{
    Standing standing;
    const double share = 100.0 / static_cast<double>(cities.size());
    for (const WantedCity& city : cities) {
        const auto matches = places.Search(city.scope, FirstLetters(city.name, letters), kShownRows);
        for (const beacond::Match& match : matches)
            standing.ten += match.atlasId == city.atlasId ? share : 0.0;
        standing.first += !matches.empty() && matches.front().atlasId == city.atlasId ? share : 0.0;
    }
    return standing;
}

} // namespace

// DUSKBEACON_RANKING names the file of another draw.
TEST_F(RealPlaces, Search_firstLettersOfACity_showItFirst)
{
    struct Group
    {
        const char* name;
        std::vector<WantedCity> cities = {};
    };
    Group shown{"shown names"};
    Group own{"own script or spelling"};
    Group country{"shown names, whole country"};
    const char* const draw = std::getenv("DUSKBEACON_RANKING");
    const std::filesystem::path table = std::filesystem::path(PLACES_TESTS) / "ranking.tsv";
    beacond::TextTable(draw ? draw : table).ForEach([&](beacond::TextTable::Columns row) {
        ASSERT_EQ(row.size(), 4U);
        const auto place = s_places->ByAtlasId("G" + std::string(row[1]));
        ASSERT_TRUE(place) << row[1];
        shown.cities.push_back({std::string(row[0]), std::string(row[2]), place->atlasId});
        country.cities.push_back({place->country, std::string(row[2]), place->atlasId});
        if (!row[3].empty())
            own.cities.push_back({std::string(row[0]), std::string(row[3]), place->atlasId});
    });
    EXPECT_GE(shown.cities.size(), 1500U);

    struct Aim
    {
        std::size_t letters;
        Standing least;
    };
    constexpr std::array kAims = {Aim{2, {97.0, 65.0}}, Aim{3, {99.999, 82.0}}, Aim{4, {99.999, 90.0}}};
    for (const Group* group : {&shown, &own, &country}) {
        for (const Aim& aim : kAims) {
            const Standing found = StandingOf(*s_places, group->cities, aim.letters);
            std::printf("%s, %zu cities, %zu letters: %.2f %% in ten, %.2f %% first\n", group->name,
                        group->cities.size(), aim.letters, found.ten, found.first);
            EXPECT_GE(found.ten, aim.least.ten) << group->name << " " << aim.letters;
            EXPECT_GE(found.first, aim.least.first) << group->name << " " << aim.letters;
        }
    }
}
