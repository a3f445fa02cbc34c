// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallTables.h"
#include "places/Places.h"

#include <gmock/gmock.h>

namespace {

/// The identifiers that a search for Springfield lists, in the order of the list, after an import of two
/// rows.
std::vector<std::string> Listed(const PlaceLine& one, const PlaceLine& other)
{
    const TemporaryFolder folder;
    (void)SmallTables{.places = one.Text() + other.Text()}.Import(folder);
    const auto places = beacond::Places::Open(folder / "places.bin");
    EXPECT_TRUE(places->ByAtlasId("US-G1") && places->ByAtlasId("US-G2")) << "hidden places answer";
    std::vector<std::string> ids;
    for (const beacond::Match& match : places->Search("US", "springf", 9))
        ids.push_back(match.atlasId);
    return ids;
}

} // namespace

TEST(Doubles, Import_twoRowsOfOnePlace_showTheLarger)
{
    using testing::ElementsAre;
    // A hundredth of a degree of latitude is 1.1 km.
    EXPECT_THAT(Listed({}, {.id = "2", .latitude = "39.83", .population = "0"}), ElementsAre("US-G1"));
    EXPECT_THAT(Listed({.name = "Springfield"}, {.id = "2", .name = "Spring-Field", .latitude = "39.805"}),
                ElementsAre("US-G1"));
    EXPECT_THAT(Listed({}, {.id = "2", .latitude = "39.805", .population = "2000"}), ElementsAre("US-G2"));
    EXPECT_THAT(Listed({.district = "167"}, {.id = "2", .latitude = "39.805"}), ElementsAre("US-G1"))
        << "the district of one is unknown";
}

TEST(Doubles, Import_twoPlacesOfOneName_showBoth)
{
    using testing::SizeIs;
    EXPECT_THAT(Listed({}, {.id = "2", .latitude = "39.83"}), SizeIs(2)) << "both have people";
    EXPECT_THAT(Listed({.population = "0"}, {.id = "2", .latitude = "39.83", .population = "0"}), SizeIs(2));
    EXPECT_THAT(Listed({}, {.id = "2", .latitude = "39.85", .population = "0"}), SizeIs(2)) << "5 km apart";
    EXPECT_THAT(Listed({}, {.id = "2", .latitude = "39.805", .division = "TX"}), SizeIs(2));
    EXPECT_THAT(Listed({.district = "167"}, {.id = "2", .latitude = "39.805", .district = "031"}), SizeIs(2));
}

TEST(Doubles, Import_aliasOfAHiddenRow_findsTheShownOne)
{
    const TemporaryFolder folder;
    (void)SmallTables{
        .places =
            PlaceLine{}.Text() +
            PlaceLine{.id = "2", .aliases = "Flower City", .latitude = "39.83", .population = "0"}.Text()}
        .Import(folder);
    const auto matches = beacond::Places::Open(folder / "places.bin")->Search("US", "flower", 9);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches.front().atlasId, "US-G1");
}
