// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/StartCounter.h"
#include "support/AttemptLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(AttemptLimit, beyondTheMost_isRefusedUntilTheWindowIsOver)
{
    const AttemptLimit::Time begin{1'800'000'000s};
    AttemptLimit limit(2, 1h);
    limit.Count("a", begin);
    EXPECT_TRUE(limit.Allows("a", begin));
    limit.Count("a", begin + 30min);

    EXPECT_FALSE(limit.Allows("a", begin + 59min));
    EXPECT_TRUE(limit.Allows("b", begin + 59min));
    EXPECT_TRUE(limit.Allows("a", begin + 60min));
}

TEST(AttemptLimit, namesWithoutEnd_keepTheMemoryBounded)
{
    const AttemptLimit::Time now{1'800'000'000s};
    AttemptLimit limit(1, 1h);
    for (int i = 0; i < 250'000; ++i) {
        limit.Count(std::to_string(i), now);
    }
    EXPECT_FALSE(limit.Allows("249999", now));
}

TEST(NetworkOf, addresses_countByHousehold)
{
    const auto networkOf = [](const char* text) { return NetworkOf(boost::asio::ip::make_address(text)); };
    EXPECT_EQ(networkOf("192.0.2.7"), "192.0.2.7");
    EXPECT_EQ(networkOf("::ffff:192.0.2.7"), "192.0.2.7");
    EXPECT_EQ(networkOf("2001:db8:1:2:3:4:5:6"), "2001:db8:1:2::/64");
    EXPECT_EQ(networkOf("2001:db8:1:2::9"), "2001:db8:1:2::/64");
}

TEST(StartCounter, take_answersWhatWasCountedSinceTheLastTime)
{
    StartCounter counter;
    counter.Add(20'000, "SA", "other");
    counter.Add(20'000, "SA", "other");
    counter.Add(20'000, "DE", "mosque", 5);

    EXPECT_THAT(counter.Take(),
                ElementsAre(StartCount{20'000, "DE", "mosque", 5}, StartCount{20'000, "SA", "other", 2}));
    EXPECT_THAT(counter.Take(), IsEmpty());
}
