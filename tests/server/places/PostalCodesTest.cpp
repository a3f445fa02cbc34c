// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DumpsFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using PostalCodesTest = DumpsTest;

TEST_F(PostalCodesTest, PostalCodes_ofOneCountry_replaceTheCodesOfThatCountryOnly)
{
    tables.places += PlaceLine{.id = "2", .name = "Toronto", .country = "CA"}.Text() +
                     PlaceLine{.id = "3", .name = "Ponce", .latitude = "18", .country = "PR"}.Text();
    tables.regions += "CA\tCA\tCanada\nPR\tPR\tPuerto Rico\n";
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6") + PostalLine("US", "00716", "", "18\t-89.6");
    (void)Import(
        {PostalLine("CA", "M5V 3L9", "Toronto", "39.8\t-89.6"), PostalLine("CA", "M5V", "", "39.8\t-89.6")});
    for (const char* code : {"62701", "62701-1234", "00716", "m5v3l9", "M5V", "M5V 1A1"})
        EXPECT_EQ(places->ByZip(code).size(), 1U) << code;
    (void)Import({PostalLine("US", "60601", "Springfield", "39.8\t-89.6")});
    EXPECT_THAT(CitiesOfCode("60601"), ElementsAre("Springfield"));
    EXPECT_THAT(CitiesOfCode("62701"), IsEmpty());
    EXPECT_THAT(CitiesOfCode("00716"), ElementsAre("Ponce")) << "a territory, which has a table of its own";
    (void)Import({PostalLine("US", "60601", "Springfield", "99\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62701"), ElementsAre("Springfield")) << "no usable row";
}

TEST_F(PostalCodesTest, PostalCodes_severalRowsOfACode_listEachPlaceOnceAndTheNamedOnesFirst)
{
    tables.places =
        PlaceLine{.name = "Altdorf", .latitude = "50.0", .country = "DE"}.Text() +
        PlaceLine{.id = "2", .name = "Neudorf", .latitude = "50.1", .country = "DE"}.Text() +
        PlaceLine{.id = "3", .name = "Stadt", .latitude = "50.05", .country = "DE", .population = "900000"}
            .Text();
    const ImportReport report = Import({PostalLine("DE", "97618", "Neudorf", "50.1\t-89.6") +
                                        PostalLine("DE", "97618", "Altdorf", "50\t-89.6")});
    EXPECT_THAT(CitiesOfCode("97618"), ElementsAre("Altdorf", "Neudorf", "Stadt"));
    EXPECT_EQ(report.codes, 1U);
}

TEST_F(PostalCodesTest, PostalCodes_ofSeveralCountries_nameTheCountryAndBeginWithTheUnitedStates)
{
    tables.places += PlaceLine{.id = "2", .latitude = "50.1", .country = "DE"}.Text();
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6");
    (void)Import({PostalLine("DE", "62701", "", "50.1\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62701"), ElementsAre("Springfield, United States", "Springfield, Germany"));
}

TEST_F(PostalCodesTest, PostalCodes_ofAreas_answerTheCodesInThem)
{
    tables.places = PlaceLine{.name = "London", .country = "GB"}.Text();
    tables.regions += "GB\tGB\tUnited Kingdom\n";
    (void)Import({PostalLine("GB", "SW1A", "", "39.8\t-89.6")});
    EXPECT_THAT(CitiesOfCode("sw1a 1aa"), ElementsAre("London"));
    EXPECT_THAT(CitiesOfCode("sw1b 1aa"), IsEmpty());
    tables.places = PlaceLine{.country = "DE"}.Text();
    (void)Import({PostalLine("DE", "1012", "", "39.8\t-89.6") + PostalLine("DE", "D02", "", "39.8\t-89.6") +
                  PostalLine("DE", "X1", "", "39.8\t-89.6")});
    for (const char* code : {"1012AB", "1012 A", "D02 X285"})
        EXPECT_THAT(CitiesOfCode(code), ElementsAre("Springfield")) << code;
    EXPECT_THAT(CitiesOfCode("x1 ab"), IsEmpty()) << "areas have three letters or more";
}

TEST_F(PostalCodesTest, PostalCodes_withoutAnArea_listThePlacesOfTheirNeighbours)
{
    tables.places += PlaceLine{.id = "2", .name = "Decatur", .latitude = "41"}.Text() +
                     PlaceLine{.id = "3", .name = "Peoria", .latitude = "45"}.Text();
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6") +
                    PostalLine("US", "62702", "", "41\t-89.6") + PostalLine("US", "62703", "", "41\t-89.6") +
                    PostalLine("US", "62790", "", "45\t-89.6");
    (void)Import({PostalLine("US", "627", "", "45\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62704"), IsEmpty()) << "a code of another length";
    tables.postal += PostalLine("US", "99999", "", "45\t-89.6");
    (void)Import({PlaceLine{}.Text()});
    EXPECT_THAT(CitiesOfCode("62704"), ElementsAre("Decatur", "Springfield")) << "that of most codes first";
    EXPECT_THAT(CitiesOfCode("62704-1234"), ElementsAre("Decatur", "Springfield"));
    EXPECT_THAT(CitiesOfCode("62788"), ElementsAre("Decatur", "Springfield", "Peoria")) << "of three digits";
    EXPECT_THAT(CitiesOfCode("62888"), IsEmpty());
    EXPECT_THAT(CitiesOfCode("٦٢٧٠١"), ElementsAre("Springfield")) << "digits of another script";
}

TEST_F(PostalCodesTest, PostalCodes_unknownZipThatAnotherCountryHas_beginWithTheNeighbours)
{
    tables.places += PlaceLine{.id = "2", .name = "Stadt", .latitude = "50.1", .country = "DE"}.Text();
    tables.postal = PostalLine("US", "62701", "", "39.8\t-89.6");
    (void)Import({PostalLine("DE", "62702", "", "50.1\t-89.6") +
                  PostalLine("DE", "62703", "", "50.1\t-89.6") +
                  PostalLine("DE", "99999", "", "50.1\t-89.6")});
    EXPECT_THAT(CitiesOfCode("62702"), ElementsAre("Springfield, United States", "Stadt, Germany"));
    EXPECT_THAT(CitiesOfCode("99999"), ElementsAre("Stadt"));
    EXPECT_THAT(CitiesOfCode("62704"), ElementsAre("Springfield")) << "only neighbours in the United States";
}

TEST_F(PostalCodesTest, PostalCodes_ofTheOverlay_areAdded)
{
    tables.overlay = "postal\t" + PostalLine("US", "73301", "Springfield", "39.8\t-89.6");
    EXPECT_THAT(SkippedRowsOf(Import({PlaceLine{}.Text()})), IsEmpty());
    EXPECT_THAT(CitiesOfCode("73344"), ElementsAre("Springfield"));
    (void)Import({PostalLine("US", "62701", "", "39.8\t-89.6")});
    EXPECT_THAT(CitiesOfCode("73301"), IsEmpty()) << "the operator's table has all codes";
}

TEST_F(PostalCodesTest, PostalCodes_ofBrazil_belongToTheCodeBefore)
{
    tables.places = PlaceLine{.name = "Cidade", .latitude = "-23", .country = "DE"}.Text() +
                    PlaceLine{.id = "2", .name = "Vila", .latitude = "-24", .country = "DE"}.Text();
    (void)Import({PostalLine("DE", "01000-000", "", "-23\t-89.6") +
                  PostalLine("DE", "06000-000", "", "-24\t-89.6") +
                  PostalLine("DE", "0300", "", "-24\t-89.6")});
    EXPECT_THAT(CitiesOfCode("01000-000"), ElementsAre("Cidade"));
    EXPECT_THAT(CitiesOfCode("05999-999"), ElementsAre("Cidade"));
    EXPECT_THAT(CitiesOfCode("06310-100"), ElementsAre("Vila"));
    EXPECT_THAT(CitiesOfCode("00999-999"), IsEmpty());
    EXPECT_THAT(CitiesOfCode("10000-000"), IsEmpty()) << "another part of the country";
}

TEST_F(PostalCodesTest, PostalCodes_whoseNameContainsThatOfACity_listTheCityFirst)
{
    tables.places = PlaceLine{.name = "Toronto", .latitude = "39.9", .population = "2700000"}.Text() +
                    PlaceLine{.id = "2", .name = "Niagara"}.Text() +
                    PlaceLine{.id = "3", .name = "Downtown", .latitude = "39.81"}.Text() +
                    PlaceLine{.id = "4", .name = "Bay", .latitude = "39.82", .population = "3000000"}.Text();
    (void)Import(
        {PostalLine("US", "12345", "Old Toronto (Railway Lands / South Niagara / Bay)", "39.8\t-89.64") +
         PostalLine("US", "12346", "Torontoville", "39.8\t-89.64") +
         PostalLine("US", "12347", "Niagara", "39.8\t-89.64")});
    EXPECT_THAT(CitiesOfCode("12345"), ElementsAre("Toronto", "Niagara", "Bay", "Downtown"));
    EXPECT_THAT(CitiesOfCode("12346"), ElementsAre("Bay", "Toronto", "Niagara", "Downtown"));
    EXPECT_THAT(CitiesOfCode("12347").front(), "Niagara");
}

TEST_F(PostalCodesTest, PostalCodes_thatReplaceOthers_areReported)
{
    tables.postal =
        PostalLine("US", "62701", "", "39.8\t-89.6") + PostalLine("US", "62702", "", "39.8\t-89.6");
    const ImportReport report = Import({PostalLine("US", "62703", "", "39.8\t-89.6")});
    EXPECT_THAT(report.replacedCodes, ElementsAre(Pair("United States", beacond::ReplacedCodes{2, 1})));
    EXPECT_THAT(Import({PlaceLine{}.Text()}).replacedCodes, IsEmpty());
}
