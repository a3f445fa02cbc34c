// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RepeatLimit.h"

#include <gtest/gtest.h>

#include <string>

using beacond::RepeatLimit;
using namespace std::chrono_literals;

TEST(RepeatLimit, sameText_passesOnceAWindowWithTheNumberSuppressed)
{
    RepeatLimit limit(10s);
    const RepeatLimit::Time begin{};
    EXPECT_EQ(limit.Pass("store away", begin), 0U);
    EXPECT_EQ(limit.Pass("store away", begin + 1s), std::nullopt);
    EXPECT_EQ(limit.Pass("spool away", begin + 2s), 0U) << "another text";
    EXPECT_EQ(limit.Pass("store away", begin + 9s), std::nullopt);
    EXPECT_EQ(limit.Pass("store away", begin + 10s), 2U);
    EXPECT_EQ(limit.Pass("store away", begin + 11s), std::nullopt);
    EXPECT_EQ(limit.Pass("store away", begin + 20s), 1U);
}

TEST(RepeatLimit, manyTexts_areForgottenAfterTheirWindow)
{
    RepeatLimit limit(10s);
    const RepeatLimit::Time begin{};
    for (int i = 0; i < 10'000; ++i) {
        EXPECT_EQ(limit.Pass(std::to_string(i), begin), 0U);
    }
    EXPECT_LE(limit.Texts(), RepeatLimit::kMostTexts);
    EXPECT_EQ(limit.Pass("later", begin + 10s), 0U);
    EXPECT_EQ(limit.Texts(), 1U);
}
