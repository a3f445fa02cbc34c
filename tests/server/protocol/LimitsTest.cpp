// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "protocol/StartCounter.h"
#include "support/AttemptLimit.h"
#include "support/Network.h"

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
    EXPECT_TRUE(limit.Take("a", begin));
    EXPECT_TRUE(limit.Take("a", begin + 30min));

    EXPECT_FALSE(limit.Take("a", begin + 59min));
    EXPECT_TRUE(limit.Take("b", begin + 59min));
    EXPECT_TRUE(limit.Take("a", begin + 60min));
}

TEST(AttemptLimit, givenBack_doesNotCount)
{
    const AttemptLimit::Time now{1'800'000'000s};
    AttemptLimit limit(1, 1h);
    EXPECT_TRUE(limit.Take("a", now));
    limit.GiveBack("a");
    limit.GiveBack("unknown");
    EXPECT_TRUE(limit.Take("a", now));
    EXPECT_FALSE(limit.Take("a", now));
}

TEST(AttemptLimit, namesWithoutEnd_pushOutTheOldestAlone)
{
    const AttemptLimit::Time now{1'800'000'000s};
    AttemptLimit limit(1, 1h);
    for (std::size_t i = 0; i < AttemptLimit::kMostNames + 50'000; ++i) {
        EXPECT_TRUE(limit.Take(std::to_string(i), now));
    }
    EXPECT_LE(limit.Names(), AttemptLimit::kMostNames);
    EXPECT_FALSE(limit.Take(std::to_string(AttemptLimit::kMostNames + 49'999), now));
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
