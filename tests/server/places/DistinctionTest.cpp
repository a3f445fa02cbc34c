// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Distinction.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using beacond::DistinctName;
using beacond::ListKind;
using beacond::PlaceLabel;
using beacond::layout::Distinction;

namespace {

std::vector<std::string> Shown(const std::vector<PlaceLabel>& labels, ListKind list)
{
    std::vector<Distinction> distinctions(labels.size(), Distinction::None);
    beacond::Distinguish(labels, list, [&](std::size_t i, Distinction d) { distinctions[i] = d; });
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < labels.size(); ++i)
        shown.push_back(DistinctName(labels[i], distinctions[i], list));
    return shown;
}

} // namespace

TEST(Distinction, Distinguish_wholeCountry_usesTheLeastDistinction)
{
    const std::vector<PlaceLabel> labels = {{"Springfield", "Illinois", "Sangamon County", 0, 0},
                                            {"Springfield", "Ohio", "Clark County", 0, 0},
                                            {"Springfield", "Ohio", "Hardin County", 0, 0}};
    EXPECT_THAT(Shown(labels, ListKind::Country),
                testing::ElementsAre("Springfield (Illinois)", "Springfield (Clark County, Ohio)",
                                     "Springfield (Hardin County, Ohio)"));
}

TEST(Distinction, Distinguish_divisionsWithoutNames_giveNoTextTwice)
{
    const std::vector<PlaceLabel> labels = {{"Springfield", "", "", 0, 0},
                                            {"Springfield", "Ohio", "", 3992000, -8381000},
                                            {"Springfield", "Ohio", "Clark County", 0, 0},
                                            {"Springfield", "Ohio", "Hardin County", 0, 0}};
    EXPECT_THAT(Shown(labels, ListKind::Country),
                testing::ElementsAre("Springfield", "Springfield (39.920 N, 83.810 W)",
                                     "Springfield (Clark County, Ohio)",
                                     "Springfield (Hardin County, Ohio)"));
}

TEST(Distinction, Distinguish_oneState_omitsItsName)
{
    const std::vector<PlaceLabel> labels = {{"Oak Grove", "Texas", "Bowie County", 3343210, -9480000},
                                            {"Oak Grove", "Texas", "Wood County", 3285000, -9550000},
                                            {"Oak Grove", "Texas", "Wood County", 3290000, -9551230}};
    EXPECT_THAT(Shown(labels, ListKind::Region),
                testing::ElementsAre("Oak Grove (Bowie County)", "Oak Grove (32.850 N, 95.500 W)",
                                     "Oak Grove (32.900 N, 95.512 W)"));
}

TEST(Distinction, Distinguish_onlyCoordinatesDiffer_cityWithTenTimesThePeopleHasNone)
{
    const PlaceLabel village = {"Jubail", "Eastern Province", "", 2540000, 4965000, 9000};
    PlaceLabel city = {"Jubail", "Eastern Province", "", 2701700, 4962300, 237000};
    EXPECT_THAT(Shown({city, village}, ListKind::Country),
                testing::ElementsAre("Jubail", "Jubail (25.400 N, 49.650 E)"));
    city.population = 89000;
    EXPECT_THAT(Shown({city, village}, ListKind::Country),
                testing::ElementsAre("Jubail (27.017 N, 49.623 E)", "Jubail (25.400 N, 49.650 E)"));
}
