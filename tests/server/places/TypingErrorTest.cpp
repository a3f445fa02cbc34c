// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/TypingError.h"

#include <gmock/gmock.h>

TEST(TypingError, BeginsWithOneError_oneTypingError_matches)
{
    struct Row
    {
        const char* typed;
        bool expected;
    };
    const Row rows[] = {{"london", true},   {"lond", true},   {"lodon", true},   {"lonndon", true},
                        {"lomdon", true},   {"lodnon", true}, {"londno", true},  {"londonx", true},
                        {"lodnno", false},  {"lmdn", false},  {"lxxdon", false}, {"paris", false},
                        {"londonxy", false}};
    for (const Row& row : rows)
        EXPECT_EQ(beacond::BeginsWithOneError("london", row.typed), row.expected) << row.typed;
}

TEST(TypingError, BeginsWithOneError_lettersOfSeveralBytes_countAsOne)
{
    EXPECT_TRUE(beacond::BeginsWithOneError("москва", "мосхва"));
    EXPECT_TRUE(beacond::BeginsWithOneError("москва", "мсоква"));
    EXPECT_FALSE(beacond::BeginsWithOneError("москва", "мхххва"));
}

TEST(TypingError, VariantsOfFirstLetter_containTheIntendedText)
{
    for (const char* typed : {"xondon", "olndon", "xlondon", "ondon"})
        EXPECT_THAT(beacond::VariantsOfFirstLetter(typed), testing::Contains("london")) << typed;
}
