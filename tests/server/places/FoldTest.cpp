// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Fold.h"

#include <gmock/gmock.h>

using beacond::Fold;
using beacond::FoldName;

TEST(Fold, Fold_spellingsOfOneName_areEqual)
{
    const std::pair<const char*, const char*> rows[] = {
        {"Saint-Denis", "saint denis"},
        {"København", "kobenhavn"},
        {"Łódź", "lodz"},
        {"İSTANBUL", "istanbul"},
        {"ıstanbul", "istanbul"},
        {"Gießen", "GIESSEN"},
        {"Ærø", "aero"},
        {"N'Djamena", "ndjamena"},
        {"Punalu‘u", "punaluu"},
        {"Sana’a", "sanaa"},
        {"مَكَّة", "مكه"},
        {"الأقصى", "الاقصي"},
        {"کربلا", "كربلا"},
        {"МОСКВА", "москва"},
        {"Ёлкино", "елкино"},
        {"ＴＯＫＹＯ", "tokyo"},
        {"トウキョウ", "とうきょう"},
        {"Năm Căn", "nam can"},
        {"Ġwadalupe", "gwadalupe"},
    };
    for (const auto& [one, other] : rows)
        EXPECT_EQ(Fold(one), Fold(other)) << one;
}

TEST(Fold, Fold_vowelSignsOfIndicScripts_stay)
{
    EXPECT_NE(Fold("दिल्ली"), Fold("दुल्ली"));
}

TEST(Fold, FoldName_words_beginAfterGaps)
{
    const auto words = [](const char* name) { return FoldName(name).words; };
    EXPECT_THAT(words("Kuala Lumpur"), testing::ElementsAre(5U));
    EXPECT_THAT(words("Frankfurt am Main"), testing::ElementsAre(9U, 11U));
    EXPECT_THAT(words("Saint-Denis"), testing::ElementsAre(5U));
    EXPECT_THAT(words("L'Aquila"), testing::ElementsAre(1U));
    EXPECT_THAT(words("Sana'a"), testing::IsEmpty());
    EXPECT_THAT(words("(Old) Town"), testing::ElementsAre(3U));
    EXPECT_THAT(words("São Paulo"), testing::ElementsAre(3U));
}

TEST(Fold, Fold_invalidUtf8_isDropped)
{
    EXPECT_EQ(Fold("\xFFMe\xC3kka\x80"), "mekka");
    EXPECT_EQ(Fold("- ' ."), "");
    EXPECT_EQ(Fold(""), "");
}

TEST(Fold, CountLetters_countsCodePoints)
{
    EXPECT_EQ(beacond::CountLetters("北京"), 2U);
    EXPECT_EQ(beacond::CountLetters("york"), 4U);
}
