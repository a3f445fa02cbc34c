// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Places.h"

#include "SmallTables.h"

#include <gmock/gmock.h>

using beacond::Places;

namespace {

/// The places of a small table, each with different coordinates.
std::shared_ptr<const Places> Open(SmallTables tables, std::vector<PlaceLine> lines)
{
    const TemporaryFolder folder;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].id == "1")
            lines[i].id = std::to_string(100 + i);
        if (lines[i].latitude == "39.8")
            lines[i].latitude = "40." + std::to_string(10 + i);
        tables.places += lines[i].Text();
    }
    (void)tables.Import(folder);
    return Places::Open(folder / "places.bin");
}

std::vector<std::string> Cities(const Places& places, const char* state, const char* letters,
                                std::size_t most = 1000)
{
    const std::vector<beacond::Match> matches = places.Search(state, letters, most);
    EXPECT_EQ(matches.size(), std::min(most, places.Count(state, letters))) << letters;
    std::vector<std::string> cities;
    for (const beacond::Match& match : matches)
        cities.push_back(match.city);
    return cities;
}

} // namespace

TEST(Places, Search_order_weighsTheMatchByThePopulation)
{
    // A later word counts a tenth, an alias a hundredth, a later word of an alias a thousandth.
    const auto places = Open({}, {{.name = "Romeo", .population = "5000"},
                                  {.name = "New Rome", .population = "49000"},
                                  {.name = "Roma Vieja", .population = "4800"},
                                  {.name = "Oldtown", .aliases = "Romania", .population = "470000"},
                                  {.name = "Smalltown", .aliases = "Roman", .population = "1000"},
                                  {.name = "Bigtown", .aliases = "Nova Roma", .population = "4600000"}});
    EXPECT_THAT(Cities(*places, "US", "rom"),
                testing::ElementsAre("Romeo", "New Rome", "Roma Vieja", "Oldtown", "Bigtown", "Smalltown"));
    EXPECT_THAT(Cities(*places, "US", "rom", 2), testing::ElementsAre("Romeo", "New Rome"));
}

TEST(Places, Search_wholeName_countsTenTimesItsBeginning)
{
    const auto places = Open({}, {{.name = "West", .population = "10"},
                                  {.name = "Westfield", .population = "40000"},
                                  {.name = "West Raleigh", .population = "340000"},
                                  {.name = "Quezon", .population = "27000"},
                                  {.name = "Quezonville", .population = "260000"},
                                  {.name = "Quezon City", .population = "280000"},
                                  {.name = "Paris", .population = "10"},
                                  {.name = "Parisville", .population = "49000"}});
    EXPECT_THAT(Cities(*places, "US", "west"), testing::ElementsAre("West Raleigh", "West", "Westfield"));
    EXPECT_THAT(Cities(*places, "US", "quezon"),
                testing::ElementsAre("Quezon City", "Quezon", "Quezonville"));
    EXPECT_THAT(Cities(*places, "US", "paris"), testing::ElementsAre("Paris", "Parisville"));
}

TEST(Places, Search_twoLetters_countAWholeNameAndALaterWordLess)
{
    const auto places = Open({}, {{.name = "Oi", .population = "60000"},
                                  {.name = "Oita", .population = "400000"},
                                  {.name = "Oijen", .population = "10"},
                                  {.name = "Great Oitown", .population = "9000000"}});
    EXPECT_THAT(Cities(*places, "US", "oi"), testing::ElementsAre("Oita", "Great Oitown", "Oi", "Oijen"));
    EXPECT_THAT(Cities(*places, "US", "oit"), testing::ElementsAre("Great Oitown", "Oita"));
}

TEST(Places, Search_fourLetters_countALaterWordMore)
{
    const auto places = Open(
        {}, {{.name = "Yorkville", .population = "40000"}, {.name = "New Yorktown", .population = "200000"}});
    EXPECT_THAT(Cities(*places, "US", "yor"), testing::ElementsAre("Yorkville", "New Yorktown"));
    EXPECT_THAT(Cities(*places, "US", "york"), testing::ElementsAre("New Yorktown", "Yorkville"));
}

TEST(Places, Search_nameBeforeABracket_isAWholeName)
{
    const auto places = Open({}, {{.name = "Halle (Saale)", .population = "2000"},
                                  {.name = "Hallenberg", .population = "49000"},
                                  {.name = "Lindau (Kreis 11)", .population = "2000"},
                                  {.name = "Lindauhof", .population = "49000"}});
    EXPECT_THAT(Cities(*places, "US", "halle"), testing::ElementsAre("Halle (Saale)", "Hallenberg"));
    EXPECT_THAT(Cities(*places, "US", "lindau"), testing::ElementsAre("Lindauhof", "Lindau (Kreis 11)"))
        << "a part of the place";
}

TEST(Places, Search_wholeAliasOrWord_countsAsANameUnlessItMayBeACode)
{
    const auto places =
        Open({}, {{.name = "Longford", .population = "100"},
                  {.name = "Capital", .aliases = "LON,Long,مكة,مكه المكرمه", .population = "200"},
                  {.name = "Hill Long", .population = "150"},
                  {.name = "Village", .aliases = "مكة القديمة", .population = "9000"}});
    EXPECT_THAT(Cities(*places, "US", "lon"), testing::ElementsAre("Longford", "Hill Long", "Capital"));
    EXPECT_THAT(Cities(*places, "US", "long"), testing::ElementsAre("Capital", "Hill Long", "Longford"));
    EXPECT_THAT(Cities(*places, "US", "مكة"), testing::ElementsAre("Capital", "Village"));
}

TEST(Places, Search_words_matchFromEachWordOn)
{
    const auto places = Open({}, {{.name = "Kuala Lumpur"}, {.name = "Saint-Denis"}});
    for (const char* letters : {"kuala", "lumpur", "LUMP", "kuala lum", "kualalumpur"})
        EXPECT_THAT(Cities(*places, "US", letters), testing::ElementsAre("Kuala Lumpur")) << letters;
    for (const char* letters : {"denis", "saint denis", "saintdenis", "Saint-D"})
        EXPECT_THAT(Cities(*places, "US", letters), testing::ElementsAre("Saint-Denis")) << letters;
    EXPECT_THAT(Cities(*places, "US", "mpur"), testing::IsEmpty());
}

TEST(Places, Search_umlautsAsTwoLetters_findGermanNamesOnly)
{
    const auto places = Open({}, {{.name = "Bülach", .country = "DE", .division = ""},
                                  {.name = "Bad Dürkheim", .country = "DE", .division = ""},
                                  {.name = "Ölberg", .country = "DE", .division = ""},
                                  {.name = "Büyük"}});
    const std::pair<const char*, const char*> rows[] = {{"buelach", "Bülach"},
                                                        {"bue", "Bülach"},
                                                        {"bulach", "Bülach"},
                                                        {"duerk", "Bad Dürkheim"},
                                                        {"oelb", "Ölberg"}};
    for (const auto& [letters, city] : rows)
        EXPECT_THAT(Cities(*places, "DE", letters), testing::ElementsAre(city)) << letters;
    EXPECT_THAT(Cities(*places, "US", "bue"), testing::IsEmpty());
}

TEST(Places, Search_abbreviatedWord_findsTheFullOneAndTheReverse)
{
    const auto places = Open({}, {{.name = "Saint-Denis"},
                                  {.name = "St. Louis"},
                                  {.name = "Sankt Pölten"},
                                  {.name = "Fort Worth"},
                                  {.name = "Port Saint Lucie"},
                                  {.name = "Oldtown", .aliases = "Mount Oldtown"}});
    const std::pair<const char*, const char*> rows[] = {
        {"st denis", "Saint-Denis"},    {"St. D", "Saint-Denis"},       {"saint lou", "St. Louis"},
        {"st polten", "Sankt Pölten"},  {"ft worth", "Fort Worth"},     {"port st luc", "Port Saint Lucie"},
        {"st luc", "Port Saint Lucie"}, {"saint denis", "Saint-Denis"}, {"denis", "Saint-Denis"}};
    for (const auto& [letters, city] : rows)
        EXPECT_THAT(Cities(*places, "US", letters), testing::ElementsAre(city)) << letters;
    EXPECT_THAT(Cities(*places, "US", "mt old"), testing::IsEmpty()) << "aliases stay as they are";
}

TEST(Places, Search_typingError_isCorrectedOnlyWithoutAMatch)
{
    const auto places = Open({}, {{.name = "Springfield"}, {.name = "Springdale"}, {.name = "Sprimgfield"}});
    EXPECT_THAT(Cities(*places, "US", "springf"), testing::ElementsAre("Springfield"));
    EXPECT_THAT(Cities(*places, "US", "sprngfie"), testing::ElementsAre("Springfield"));
    EXPECT_THAT(Cities(*places, "US", "xpringda"), testing::ElementsAre("Springdale"));
    EXPECT_THAT(Cities(*places, "US", "sxr"), testing::IsEmpty()) << "too short to guess";
}

TEST(Places, Search_typingErrorInAnAlias_isCorrectedFromSixLettersOn)
{
    const auto places =
        Open({}, {{.name = "Omer", .aliases = "Hevron"}, {.name = "Town", .aliases = "Hevronah"}});
    EXPECT_THAT(Cities(*places, "US", "hebro"), testing::IsEmpty());
    EXPECT_THAT(Cities(*places, "US", "xevro"), testing::IsEmpty());
    EXPECT_THAT(Cities(*places, "US", "hebron"), testing::ElementsAre("Omer")) << "whole aliases only";
    EXPECT_THAT(Cities(*places, "US", "omar"), testing::ElementsAre("Omer"));
}

TEST(Places, Search_unusableTextOrState_isEmpty)
{
    const auto places = Open({}, {{}});
    for (const char* letters : {"", " ", "-'", "\xFF", "&+%"})
        EXPECT_THAT(Cities(*places, "US", letters), testing::IsEmpty()) << letters;
    for (const char* state : {"", "us", "XX", "US-", "US-CA"})
        EXPECT_THAT(Cities(*places, state, "spr"), testing::IsEmpty()) << state;
    EXPECT_THAT(Cities(*places, "US", std::string(9000, 's').c_str()), testing::IsEmpty());
}

TEST(Places, Search_countryAndState_distinguishPlacesOfOneName)
{
    const auto places = Open({}, {{.population = "900"},
                                  {.division = "TX", .population = "800"},
                                  {.name = "Salem", .district = "167"},
                                  {.name = "Salem", .district = "031"},
                                  {.name = "Salem", .country = "DE", .division = ""}});
    EXPECT_THAT(Cities(*places, "US", "springfield"),
                testing::ElementsAre("Springfield (Illinois)", "Springfield (Texas)"));
    EXPECT_THAT(Cities(*places, "US-TX", "springfield"), testing::ElementsAre("Springfield"));
    EXPECT_THAT(Cities(*places, "US-IL", "salem"),
                testing::UnorderedElementsAre("Salem (Sangamon County)", "Salem (Cook County)"));
    EXPECT_THAT(Cities(*places, "DE", "salem"), testing::ElementsAre("Salem"));
}

TEST(Places, States_withPlaces_areInTheOrderOfTheirNames)
{
    const auto places =
        Open({}, {{.division = "TX"}, {.country = "SA"}, {.country = "AX"}, {.country = "DE"}});
    std::vector<std::string> states;
    for (const beacond::State& state : places->States())
        states.push_back(std::string(state.id) + "=" + std::string(state.name));
    EXPECT_THAT(states, testing::ElementsAre("AX=Åland Islands", "DE=Germany", "SA=Saudi Arabia",
                                             "US=United States", "US-TX=United States - Texas"));
}

TEST(Places, ByAtlasId_unknown_isEmpty)
{
    const auto places = Open({}, {{}});
    for (const char* id :
         {"", "-", "G", "US-", "US-G", "US-G999", "US-G100x", "US-G-100", "US-G99999999999", "Springfield"})
        EXPECT_FALSE(places->ByAtlasId(id)) << id;
    EXPECT_TRUE(places->ByAtlasId("US-G100"));
    EXPECT_TRUE(places->ByAtlasId("XX-G100")) << "the country of a place may change";
}

TEST(Places, ByZip_spellings_areTheSameCode)
{
    const auto places = Open({.postal = "US\t62701\t\t\t\t\t\t\t\t40.10\t-89.64\t\nCA\tM5V\tEntertainment "
                                        "District\t\t\t\t\t\t\t43.6\t-79.4\t\nUS\tbad\t\n",
                              .regions = "US\tUS\tUnited States\nCA\tCA\tCanada\n"},
                             {{.name = "Near"},
                              {.name = "City", .latitude = "43.7", .longitude = "-79.4", .country = "CA"},
                              {.name = "Far", .latitude = "10.0"}});
    const auto first = [&places](const char* code) {
        const std::vector<beacond::Match> matches = places->ByZip(code);
        return matches.empty() ? std::string() : matches.front().city;
    };
    for (const char* code : {"62701", " 62701 ", "62701-1234", "627011234", "62701 1234"})
        EXPECT_EQ(first(code), "Near") << code;
    for (const char* code : {"M5V", "m5v 3l9", "M5V3L9"})
        EXPECT_EQ(first(code), "City") << code;
    for (const char* code : {"", "6270", "63702", "627012", "m5x 3l9"})
        EXPECT_EQ(first(code), "") << code;
}

TEST(Places, ByZip_severalPlaces_theNamedOneFirst)
{
    const std::vector<PlaceLine> lines = {
        {.name = "Hamlet", .latitude = "40.00", .longitude = "-89.00"},
        {.name = "Metropolis", .latitude = "40.05", .longitude = "-89.00", .population = "2000000"},
        {.name = "Abroad", .latitude = "40.00", .longitude = "-89.01", .country = "DE"}};
    const auto cities = [&lines](const char* name) {
        std::vector<std::string> found;
        for (const beacond::Match& match :
             Open({.postal = std::string("US\t62701\t") + name + "\t\t\t\t\t\t\t40.00\t-89.00\t\n"}, lines)
                 ->ByZip("62701"))
            found.push_back(match.city);
        return found;
    };
    EXPECT_THAT(cities(""), testing::ElementsAre("Metropolis", "Hamlet"));
    EXPECT_THAT(cities("HAMLET"), testing::ElementsAre("Hamlet", "Metropolis"));
    EXPECT_THAT(cities("Unknown"), testing::ElementsAre("Metropolis", "Hamlet"));
}
