// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TokenBuckets.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using beacond::TokenBuckets;
using namespace std::chrono_literals;

namespace {

constexpr TokenBuckets::Clock::time_point kBegin{1h};

} // namespace

TEST(TokenBuckets, burst_isFollowedByTheRateAndRefillsWithTime)
{
    TokenBuckets buckets(60, 3);
    const auto takesThree = [&buckets](TokenBuckets::Clock::time_point now) {
        return buckets.TryConsume(7, now) == 0s && buckets.TryConsume(7, now) == 0s &&
               buckets.TryConsume(7, now) == 0s && buckets.TryConsume(7, now) == 1s;
    };
    EXPECT_TRUE(takesThree(kBegin));
    EXPECT_EQ(buckets.TryConsume(8, kBegin), 0s);
    EXPECT_EQ(buckets.TryConsume(7, kBegin + 400ms), 600ms);
    EXPECT_EQ(buckets.TryConsume(7, kBegin + 1s), 0s);
    EXPECT_EQ(buckets.TryConsume(7, kBegin + 1s), 1s);
    EXPECT_TRUE(takesThree(kBegin + 24h));
}

TEST(TokenBuckets, rateOfZero_isNoLimit)
{
    TokenBuckets buckets(0, 1);
    for (int number = 0; number < 1000; ++number) {
        EXPECT_EQ(buckets.TryConsume(7, kBegin), 0s);
    }
}

TEST(TokenBuckets, manyClients_areServedAndDisplaceNoneWithoutTokens)
{
    TokenBuckets buckets(60, 3);
    for (std::uint64_t busy = 0; busy < 100; ++busy) {
        for (int token = 0; token < 3; ++token) {
            ASSERT_EQ(buckets.TryConsume(busy, kBegin), 0s);
        }
    }
    for (std::uint64_t quiet = 1'000; quiet < 1'000 + 4 * TokenBuckets::kMostClients; ++quiet) {
        ASSERT_EQ(buckets.TryConsume(quiet, kBegin), 0s);
    }
    for (std::uint64_t busy = 0; busy < 100; ++busy) {
        EXPECT_EQ(buckets.TryConsume(busy, kBegin), 1s) << busy;
    }
}

TEST(TokenBuckets, manyThreads_takeExactlyTheTokensOfTheBucket)
{
    TokenBuckets buckets(1, 5'000);
    std::atomic<int> taken = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&buckets, &taken] {
            for (int turn = 0; turn < 2'000; ++turn) {
                taken += buckets.TryConsume(7, kBegin) == 0s ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(taken, 5'000);
}
