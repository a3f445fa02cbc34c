// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/store/StoreContract.h"

#include <gmock/gmock.h>

using namespace beacond;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

TEST_F(StoreContract, addStarts_addsToTheSameDayCountryAndDistribution)
{
    store.AddStarts({{20'000, "SA", "other", 2}, {20'000, "US", "mosque", 1}});
    store.AddStarts({{20'000, "SA", "other", 3}, {20'001, "SA", "other", 1}});

    EXPECT_THAT(store.Starts(),
                ElementsAre(StartCount{20'000, "SA", "other", 5}, StartCount{20'000, "US", "mosque", 1},
                            StartCount{20'001, "SA", "other", 1}));
}

TEST_F(StoreContract, strips_areKeptAsGivenUntilRemoved)
{
    Strip first{0, "<b>Eid \xC3\xA9</b>", "mosque", "DE", "2027-03-01", "2027-03-10"};
    Strip second{0, "<i>all</i>", "", "", "", ""};
    first.id = store.AddStrip(first);
    second.id = store.AddStrip(second);

    EXPECT_THAT(store.Strips(), ElementsAre(first, second));
    EXPECT_TRUE(store.RemoveStrip(first.id));
    EXPECT_FALSE(store.RemoveStrip(first.id));
    EXPECT_THAT(store.Strips(), ElementsAre(second));
}

TEST_F(StoreContract, releases_areListedInTheOrderOfTheirAdditionUntilRemoved)
{
    for (const char* const sequence : {"7", "6", "7"}) {
        store.AddRelease({"1", sequence, "https://example.org/"});
    }
    const Release six{"1", "6", "https://example.org/"};
    const Release seven{"1", "7", "https://example.org/"};

    EXPECT_THAT(store.Releases(), ElementsAre(seven, six, seven));
    EXPECT_TRUE(store.RemoveRelease("1", "7"));
    EXPECT_FALSE(store.RemoveRelease("1", "7"));
    EXPECT_THAT(store.Releases(), ElementsAre(six));
}

TEST_F(StoreContract, queueText_onceInSixHours_forADeviceAndAPrayer)
{
    Register("a", "code a", "pc");
    Register("a", "code b", "second pc of that phone");

    EXPECT_FALSE(store.IsTextDue("stranger", 1));
    EXPECT_TRUE(store.IsTextDue("pc", 1));
    EXPECT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_FALSE(store.IsTextDue("second pc of that phone", 1));
    EXPECT_FALSE(store.QueueText("second pc of that phone", 1, "5:07", "SA-G1"));
    EXPECT_TRUE(store.QueueText("pc", 2, "6:30", "SA-G1"));
    now += 6 * kHour;
    EXPECT_FALSE(store.IsTextDue("pc", 1));
    EXPECT_FALSE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    now += 1;
    EXPECT_TRUE(store.IsTextDue("pc", 1));
    EXPECT_TRUE(store.QueueText("pc", 1, "5:08", "SA-G1"));
    EXPECT_EQ(store.Outbox(10).size(), 3U);
}

TEST_F(StoreContract, outbox_isOldestFirstAndLimited)
{
    Register("a", "code", "pc");
    for (int prayer = 1; prayer <= 6; ++prayer) {
        ASSERT_TRUE(store.QueueText("pc", prayer, "5:07", "SA-G1"));
    }

    EXPECT_THAT(store.Outbox(2), ElementsAre(Field(&OutboxRow::prayer, 1), Field(&OutboxRow::prayer, 2)));
}

TEST_F(StoreContract, isWrittenWith_holdsForTheFirstKeyOfAName)
{
    EXPECT_TRUE(store.IsWrittenWith("address.key", "a"));
    EXPECT_TRUE(store.IsWrittenWith("address.key", "a"));
    EXPECT_FALSE(store.IsWrittenWith("address.key", "b"));
    EXPECT_TRUE(store.IsWrittenWith("index.key", "b"));
}

TEST_F(StoreContract, abandon_undoesAllCallsSinceBegin)
{
    store.Begin();
    store.AddRelease({"1", "6", "https://example.org/6"});
    store.Abandon();

    EXPECT_THAT(store.Releases(), IsEmpty());
}

TEST_F(StoreContract, queueText_lastTextDatedFarAhead_doesNotCount)
{
    Register("a", "code", "pc");
    now += 365 * 24 * kHour;
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));

    now -= 6 * kHour;
    EXPECT_FALSE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    now -= 1;
    EXPECT_TRUE(store.IsTextDue("pc", 1));
    EXPECT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
}
