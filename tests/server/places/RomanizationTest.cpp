// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Romanization.h"

#include "SmallTables.h"
#include "places/Places.h"

#include <gtest/gtest.h>

TEST(Romanization, CommonSpelling_countryOfAnotherScript_hasNoScientificMarks)
{
    struct Row
    {
        const char* name;
        const char* country;
        const char* expected;
    };
    const Row rows[] = {
        {"Thāne", "IN", "Thane"},         {"Al Khuşūş", "EG", "Al Khusus"}, {"‘Arīqah", "SY", "Ariqah"},
        {"Ma’anshan", "CN", "Ma'anshan"}, {"Kōriyama", "JP", "Koriyama"},   {"Béjaïa", "DZ", "Béjaïa"},
        {"Ürümqi", "CN", "Ürümqi"},       {"Curaçao", "MA", "Curaçao"},     {"Şanlıurfa", "TR", "Şanlıurfa"},
        {"Rēzekne", "LV", "Rēzekne"},     {"Москва̄", "RU", "Москва̄"},       {"Ryazan’", "RU", "Ryazan"},
        {"Homyel'", "BY", "Homyel"},      {"L'Eau'", "FR", "L'Eau'"},       {"Goyang-si", "KR", "Goyang"},
        {"Sariwŏn-si", "KP", "Sariwŏn"},  {"Bella-si", "IT", "Bella-si"},   {"-si", "KR", "-si"},
        {"Rasna, Расна", "BY", "Rasna"},  {"A, B", "ES", "A, B"},           {", B", "CN", ", B"}};
    for (const Row& row : rows)
        EXPECT_EQ(beacond::CommonSpelling(row.name, row.country), row.expected) << row.name;
}

TEST(Romanization, Import_namesOfPlacesAndRegions_areInTheirCommonSpelling)
{
    const TemporaryFolder folder;
    (void)SmallTables{
        .places =
            PlaceLine{
                .name = "Ţaybah", .latitude = "24", .country = "SA", .division = "01", .population = "9"}
                .Text() +
            PlaceLine{.id = "2", .name = "Ţaybah", .country = "SA", .division = "02"}.Text(),
        .divisions = "SA.01\tAr Riyāḑ\nSA.02\tJāzān\n"}
        .Import(folder);
    const auto places = beacond::Places::Open(folder / "places.bin");
    const auto matches = places->Search("SA", "tay", 2);
    ASSERT_EQ(matches.size(), 2U);
    EXPECT_EQ(matches[0].city, "Taybah (Jazan)");
    EXPECT_EQ(matches[1].city, "Taybah (Ar Riyad)");
}
