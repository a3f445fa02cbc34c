// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/AttemptLimit.h"

#include <gtest/gtest.h>

#include <string>

using beacond::AttemptLimit;
using namespace std::chrono_literals;

TEST(AttemptLimit, beyondTheLimit_isRefusedUntilTheWindowEnds)
{
    const AttemptLimit::Time begin{1'800'000s};
    AttemptLimit limit(2, 1h);
    EXPECT_TRUE(limit.TryConsume("a", begin));
    EXPECT_TRUE(limit.TryConsume("a", begin + 30min));

    EXPECT_FALSE(limit.TryConsume("a", begin + 59min));
    EXPECT_TRUE(limit.TryConsume("b", begin + 59min));
    EXPECT_TRUE(limit.TryConsume("a", begin + 60min));
}

TEST(AttemptLimit, returnedAttempt_doesNotCount)
{
    const AttemptLimit::Time now{1'800'000s};
    AttemptLimit limit(1, 1h);
    EXPECT_TRUE(limit.TryConsume("a", now));
    limit.GiveBack("a");
    limit.GiveBack("unknown");
    EXPECT_TRUE(limit.TryConsume("a", now));
    EXPECT_FALSE(limit.TryConsume("a", now));
}

TEST(AttemptLimit, manyNames_displaceOnlyTheOldest)
{
    const AttemptLimit::Time now{1'800'000s};
    AttemptLimit limit(1, 1h);
    for (std::size_t i = 0; i < AttemptLimit::kMostNames + 50'000; ++i) {
        EXPECT_TRUE(limit.TryConsume(std::to_string(i), now));
    }
    EXPECT_LE(limit.Names(), AttemptLimit::kMostNames);
    EXPECT_FALSE(limit.TryConsume(std::to_string(AttemptLimit::kMostNames + 49'999), now));
}
