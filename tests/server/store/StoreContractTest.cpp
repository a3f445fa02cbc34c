// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/TemporaryFolder.h"
#include "store/SqliteStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::int64_t kHour = 3600;

Signup SignupOf(const std::string& address, const std::string& code)
{
    return {"mail", "sealed " + address, "index " + address, code, 1800, "form", "texts at prayer times"};
}

} // namespace

/// What every store does, whatever it keeps its rows in.
class StoreContract : public testing::Test
{
protected:
    std::int64_t Queued() { return static_cast<std::int64_t>(store.Outbox(1000).size()); }

    TemporaryFolder folder;
    std::int64_t now = 1'800'000'000;
    SqliteStore store{folder.File("store.db"), [this] { return now; }};
};

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

TEST_F(StoreContract, releases_comeInTheOrderOfTheirAddition)
{
    store.AddRelease({"1", "6", "https://example.org/6"});
    store.AddRelease({"1", "5", "https://example.org/5"});

    EXPECT_THAT(store.Releases(), ElementsAre(Release{"1", "6", "https://example.org/6"},
                                              Release{"1", "5", "https://example.org/5"}));
}

TEST_F(StoreContract, confirm_codeOfASignup_bindsTheInstallation)
{
    store.SignUp(SignupOf("a", "code"));

    EXPECT_EQ(store.Confirm("another", "pc"), Confirmation::Unknown);
    EXPECT_FALSE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
    EXPECT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
}

TEST_F(StoreContract, confirm_afterTheLifetime_isExpired)
{
    store.SignUp(SignupOf("a", "code"));
    now += 1800;
    store.SignUp(SignupOf("b", "second"));
    now += 1;

    EXPECT_EQ(store.Confirm("code", "pc"), Confirmation::Expired);
    EXPECT_EQ(store.Confirm("second", "pc"), Confirmation::Confirmed);
}

TEST_F(StoreContract, confirm_again_holdsForTheSameInstallationAndADay)
{
    store.SignUp(SignupOf("a", "code"));
    ASSERT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
    now += 24 * kHour;

    EXPECT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
    EXPECT_EQ(store.Confirm("code", "another pc"), Confirmation::Unknown);
    now += 1;
    EXPECT_EQ(store.Confirm("code", "pc"), Confirmation::Unknown);
}

TEST_F(StoreContract, signUp_again_replacesTheCodeAndKeepsTheInstallations)
{
    const std::int64_t device = store.SignUp(SignupOf("a", "old"));
    ASSERT_EQ(store.Confirm("old", "first pc"), Confirmation::Confirmed);

    EXPECT_EQ(store.SignUp(SignupOf("a", "new")), device);
    EXPECT_EQ(store.Confirm("old", "second pc"), Confirmation::Unknown);
    EXPECT_EQ(store.Confirm("new", "second pc"), Confirmation::Confirmed);
    EXPECT_TRUE(store.QueueText("first pc", 1, "5:07", "SA-G1"));
    EXPECT_TRUE(store.QueueText("second pc", 2, "6:30", "SA-G1"));
}

TEST_F(StoreContract, confirm_newerDevice_replacesTheOneOfTheInstallation)
{
    store.SignUp(SignupOf("a", "code a"));
    const std::int64_t newer = store.SignUp(SignupOf("b", "code b"));
    ASSERT_EQ(store.Confirm("code a", "pc"), Confirmation::Confirmed);
    ASSERT_EQ(store.Confirm("code b", "pc"), Confirmation::Confirmed);

    ASSERT_TRUE(store.QueueText("pc", 6, "20:15", "SA-G1"));
    EXPECT_THAT(store.Outbox(10), ElementsAre(OutboxRow{1, newer, 6, "20:15", "SA-G1", now}));
}

TEST_F(StoreContract, queueText_onceInSixHours_forADeviceAndAPrayer)
{
    store.SignUp(SignupOf("a", "code a"));
    ASSERT_EQ(store.Confirm("code a", "pc"), Confirmation::Confirmed);
    store.SignUp(SignupOf("a", "code b"));
    ASSERT_EQ(store.Confirm("code b", "second pc of that phone"), Confirmation::Confirmed);

    EXPECT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_FALSE(store.QueueText("second pc of that phone", 1, "5:07", "SA-G1"));
    EXPECT_TRUE(store.QueueText("pc", 2, "6:30", "SA-G1"));
    now += 6 * kHour;
    EXPECT_FALSE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    now += 1;
    EXPECT_TRUE(store.QueueText("pc", 1, "5:08", "SA-G1"));
    EXPECT_EQ(Queued(), 3);
}

TEST_F(StoreContract, outbox_isOldestFirstAndLimited)
{
    store.SignUp(SignupOf("a", "code"));
    ASSERT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
    for (int prayer = 1; prayer <= 6; ++prayer) {
        ASSERT_TRUE(store.QueueText("pc", prayer, "5:07", "SA-G1"));
    }

    const std::vector<OutboxRow> texts = store.Outbox(2);
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts[0].prayer, 1);
    EXPECT_EQ(texts[1].prayer, 2);
}

TEST_F(StoreContract, forget_takesTheDeviceItsInstallationsAndItsTexts)
{
    store.SignUp(SignupOf("a", "code"));
    ASSERT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));

    EXPECT_TRUE(store.Forget("index a"));
    EXPECT_FALSE(store.Forget("index a"));
    EXPECT_THAT(store.Outbox(10), IsEmpty());
    EXPECT_FALSE(store.QueueText("pc", 2, "6:30", "SA-G1"));
}

TEST_F(StoreContract, isWrittenWith_holdsForTheFirstKeyOfAName)
{
    EXPECT_TRUE(store.IsWrittenWith("address.key", "a"));
    EXPECT_TRUE(store.IsWrittenWith("address.key", "a"));
    EXPECT_FALSE(store.IsWrittenWith("address.key", "b"));
    EXPECT_TRUE(store.IsWrittenWith("index.key", "b"));
}

TEST_F(StoreContract, abandon_undoesEverythingSinceTheBeginning)
{
    store.Begin();
    store.AddRelease({"1", "6", "https://example.org/6"});
    store.Abandon();

    EXPECT_THAT(store.Releases(), IsEmpty());
}
