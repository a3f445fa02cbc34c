// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/store/StoreContract.h"

#include <gmock/gmock.h>

using namespace beacond;
using testing::IsEmpty;
using testing::SizeIs;

class OutboxContract : public StoreContract
{
protected:
    /// Registers a device and queues a text for it.
    void Queue(const std::string& name, int prayer = 1)
    {
        if (!store.IsTextDue(name, 1) && !store.IsTextDue(name, 2)) {
            Register(name, "code " + name, name);
        }
        ASSERT_TRUE(store.QueueText(name, prayer, "5:07", "SA-G1"));
    }
    std::vector<LeasedText> Take(std::size_t most = 10, std::int64_t price = 0, std::int64_t spendPerDay = 0)
    {
        return store.LeaseTexts({"mail", most, 60, price, spendPerDay}).texts;
    }
    bool Begin(const LeasedText& text) { return store.BeginSending(text.text.id, text.fence); }
    bool End(const LeasedText& text, TextEnd end, std::int64_t retryAfter = 5)
    {
        return store.EndSending(text.text.id, text.fence, end, retryAfter);
    }
    std::int64_t Spent() { return store.StateOfOutbox().spentToday; }
};

TEST_F(OutboxContract, leaseTexts_takesEachTextOnceInBatchesOldestFirst)
{
    for (const char* const name : {"a", "b", "c"}) {
        Queue(name);
    }
    EXPECT_TRUE(store.IsTextWaiting("mail"));
    EXPECT_FALSE(store.IsTextWaiting("sms"));
    EXPECT_THAT(store.LeaseTexts({"sms", 10, 60}).texts, IsEmpty());
    const std::vector<LeasedText> first = Take(2);
    ASSERT_THAT(first, SizeIs(2));
    EXPECT_EQ(first[0].sealedAddress, "sealed a");
    EXPECT_EQ(first[1].sealedAddress, "sealed b");
    EXPECT_FALSE(first[0].mayBeSent);
    EXPECT_THAT(Take(), SizeIs(1));
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_FALSE(store.IsTextWaiting("mail"));
    EXPECT_EQ(store.StateOfOutbox().leased, 3);
    EXPECT_TRUE(Begin(first[0]));
    EXPECT_TRUE(End(first[0], TextEnd::Sent));
    EXPECT_TRUE(End(first[1], TextEnd::NotTried));
    EXPECT_EQ(store.StateOfOutbox().waiting, 1);
    EXPECT_EQ(Take().at(0).text.id, first[1].text.id);
}

TEST_F(OutboxContract, expiredLease_isReplacedAndItsLateWritesAreRefused)
{
    Queue("a");
    const LeasedText lost = Take().at(0);
    now += 59;
    EXPECT_THAT(Take(), IsEmpty());
    now += 1;
    EXPECT_FALSE(Begin(lost)) << "expired";
    const LeasedText again = Take().at(0);
    EXPECT_GT(again.fence, lost.fence);
    EXPECT_FALSE(again.mayBeSent) << "its sending had not begun";
    EXPECT_FALSE(Begin(lost));
    for (const TextEnd end : {TextEnd::Sent, TextEnd::RetryLater, TextEnd::Refused, TextEnd::Unknown}) {
        EXPECT_FALSE(End(lost, end));
    }
    EXPECT_TRUE(Begin(again));
    EXPECT_FALSE(Begin(again)) << "begins once";
    now += 60;
    const LeasedText third = Take().at(0);
    EXPECT_TRUE(third.mayBeSent) << "no result is known";
    EXPECT_EQ(third.attempts, 1);
    EXPECT_TRUE(Begin(third));
    EXPECT_TRUE(End(third, TextEnd::Sent));
    EXPECT_FALSE(End(third, TextEnd::Sent));
    EXPECT_THAT(store.Outbox(10), IsEmpty());
}

TEST_F(OutboxContract, lateResultWithoutANewerLease_isAccepted)
{
    Queue("a");
    const LeasedText text = Take().at(0);
    ASSERT_TRUE(Begin(text));
    now += 100;
    EXPECT_TRUE(End(text, TextEnd::Sent));
    EXPECT_THAT(store.Outbox(10), IsEmpty());
}

TEST_F(OutboxContract, endSending_retryIsDueAfterItsTimeAndRemembersAnUnknownResult)
{
    Queue("a");
    LeasedText text = Take().at(0);
    ASSERT_TRUE(Begin(text));
    ASSERT_TRUE(End(text, TextEnd::RetryLater, 20));
    now += 19;
    EXPECT_THAT(Take(), IsEmpty());
    Queue("b");
    now += 1;
    const std::vector<LeasedText> both = Take();
    ASSERT_THAT(both, SizeIs(2));
    EXPECT_EQ(both[0].sealedAddress, "sealed b") << "the first attempt of a text comes before a repetition";
    text = both[1];
    EXPECT_FALSE(text.mayBeSent);
    ASSERT_TRUE(Begin(text));
    ASSERT_TRUE(End(text, TextEnd::Unknown, 1));
    now += 1;
    EXPECT_EQ(store.StateOfOutbox().uncertain, 1);
    text = Take().at(0);
    EXPECT_TRUE(text.mayBeSent);
    EXPECT_EQ(text.attempts, 2);
    ASSERT_TRUE(Begin(text));
    ASSERT_TRUE(End(text, TextEnd::RetryLater, 1));
    now += 1;
    EXPECT_TRUE(Take().at(0).mayBeSent) << "a later failure does not make it known";
}

TEST_F(OutboxContract, dropOldTexts_givesUpAfterTenMinutesButNotWithALease)
{
    Queue("a");
    Queue("b");
    now += kTextLifetime - 1;
    EXPECT_EQ(store.DropOldTexts(), 0);
    const std::vector<LeasedText> leased = Take(1);
    ASSERT_THAT(leased, SizeIs(1));
    now += 1;
    EXPECT_EQ(store.DropOldTexts(), 1);
    EXPECT_THAT(Take(), IsEmpty()) << "too old";
    EXPECT_EQ(store.StateOfOutbox().oldestAge, kTextLifetime);
    EXPECT_TRUE(End(leased[0], TextEnd::RetryLater));
    EXPECT_EQ(store.DropOldTexts(), 1);

    Queue("c");
    now -= kTextLifetime;
    EXPECT_THAT(Take(), IsEmpty()) << "dated ahead by a wrong clock";
    EXPECT_EQ(store.DropOldTexts(), 1);
}

TEST_F(OutboxContract, clockStep_changesNoAgeAndNoDueTime)
{
    for (const std::int64_t step : {-2 * kHour, std::int64_t{-500}, std::int64_t{500}, 2 * kHour}) {
        const std::string name = "phone " + std::to_string(step);
        Queue(name);
        now += 300;
        const LeasedText leased = Take().at(0);
        StepClock(step);
        EXPECT_EQ(store.DropOldTexts(), 0) << step;
        EXPECT_EQ(store.StateOfOutbox().oldestAge, 300) << step;
        EXPECT_EQ(store.StateOfOutbox().leased, 1) << step;
        ASSERT_TRUE(Begin(leased)) << step;
        ASSERT_TRUE(End(leased, TextEnd::RetryLater, 20)) << step;
        StepClock(step);
        EXPECT_THAT(Take(), IsEmpty()) << step;
        now += 20;
        EXPECT_THAT(Take(), SizeIs(1)) << step;
        now += 279;
        EXPECT_EQ(store.DropOldTexts(), 0) << step;
        now += 1;
        EXPECT_EQ(store.DropOldTexts(), 1) << step;
    }
}

TEST_F(OutboxContract, clockStep_leavesTheTextsQueuedAfterItAsTheyAre)
{
    Queue("a");
    StepClock(-kHour);
    Queue("b");
    EXPECT_EQ(store.StateOfOutbox().oldestAge, 0);
    now += kTextLifetime - 1;
    EXPECT_EQ(store.DropOldTexts(), 0);
    EXPECT_THAT(Take(), SizeIs(2));
}

// The service has ended before the step: no clock tells the ages.
TEST_F(OutboxContract, textsOfAnEarlierRunDatedAhead_areGivenUpBeyondAMinute)
{
    Queue("a");
    Queue("b");
    const LeasedText lost = Take(1).at(0);
    ASSERT_TRUE(Begin(lost));
    now -= 60;
    EXPECT_EQ(store.DropOldTexts(), 0);
    const LeasedText unused = Take().at(0);
    ASSERT_TRUE(End(unused, TextEnd::NotTried));
    now -= 1;
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_EQ(store.DropOldTexts(), 1) << "the other one is leased";
    now -= kLongestLease;
    EXPECT_EQ(store.StateOfOutbox().leased, 0) << "no lease is as long";
    EXPECT_FALSE(store.BeginSending(lost.text.id, lost.fence));
    EXPECT_EQ(store.DropOldTexts(), 1);
}

TEST_F(OutboxContract, clockStep_givesADeviceNoFurtherTexts)
{
    Register("a", "code", "pc");
    for (int prayer = 1; prayer <= 6; ++prayer) {
        ASSERT_TRUE(store.QueueText("pc", prayer, "5:07", ""));
    }
    for (const LeasedText& text : Take()) {
        ASSERT_TRUE(Begin(text));
        ASSERT_TRUE(End(text, TextEnd::Sent));
    }
    StepClock(48 * kHour);
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", ""));
    EXPECT_EQ(store.LeaseTexts({"mail", 10, 60}).dropped, 1);
    StepClock(-96 * kHour);
    now += 23 * kHour;
    ASSERT_TRUE(store.QueueText("pc", 2, "5:07", ""));
    EXPECT_THAT(Take(), SizeIs(1)) << "23 hours have passed";
}

TEST_F(OutboxContract, device_hasSixTextsInADay)
{
    Register("a", "code", "pc");
    const auto send = [this] {
        const Lease lease = store.LeaseTexts({"mail", 10, 60});
        for (const LeasedText& text : lease.texts) {
            EXPECT_TRUE(Begin(text));
            EXPECT_TRUE(End(text, TextEnd::Sent));
        }
        return std::pair(lease.texts.size(), lease.dropped);
    };
    for (int prayer = 1; prayer <= 6; ++prayer) {
        ASSERT_TRUE(store.QueueText("pc", prayer, "5:07", ""));
    }
    // A failed attempt does not count as a further text.
    const LeasedText first = Take(1).at(0);
    ASSERT_TRUE(Begin(first));
    ASSERT_TRUE(End(first, TextEnd::RetryLater, 0));
    EXPECT_EQ(send(), std::pair(std::size_t{6}, std::int64_t{0}));
    now += 7 * kHour;
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", ""));
    EXPECT_EQ(send(), std::pair(std::size_t{0}, std::int64_t{1}));
    EXPECT_THAT(store.Outbox(10), IsEmpty());
    now += 16 * kHour;
    ASSERT_TRUE(store.QueueText("pc", 1, "5:06", ""));
    EXPECT_EQ(send(), std::pair(std::size_t{1}, std::int64_t{0}));
}

TEST_F(OutboxContract, spend_isChargedForWhatTheProviderMayHaveUpToTheLimitOfADay)
{
    for (const char* const name : {"a", "b", "c", "d"}) {
        Queue(name);
    }
    const Lease lease = store.LeaseTexts({"mail", 10, 60, 10, 39});
    ASSERT_THAT(lease.texts, SizeIs(3));
    EXPECT_TRUE(lease.isSpendReached);
    EXPECT_EQ(Spent(), 30);
    EXPECT_THAT(Take(10, 10, 39), IsEmpty());
    for (const LeasedText& text : lease.texts) {
        ASSERT_TRUE(Begin(text));
    }
    EXPECT_TRUE(End(lease.texts[0], TextEnd::Sent));
    EXPECT_EQ(Spent(), 30);
    EXPECT_TRUE(End(lease.texts[1], TextEnd::Refused));
    EXPECT_EQ(Spent(), 20);
    EXPECT_TRUE(End(lease.texts[2], TextEnd::Unknown, 0));
    EXPECT_EQ(Spent(), 20);
    const std::vector<LeasedText> rest = Take(10, 10, 39);
    ASSERT_THAT(rest, SizeIs(1));
    EXPECT_EQ(rest[0].sealedAddress, "sealed d");
    EXPECT_TRUE(End(rest[0], TextEnd::NotTried));
    EXPECT_EQ(Spent(), 20);
    EXPECT_TRUE(store.TrySpend(19, 39));
    EXPECT_FALSE(store.TrySpend(1, 39));
    EXPECT_EQ(Spent(), 39);
}

TEST_F(OutboxContract, leaseThatExpiredBeforeTheSending_isChargedOnce)
{
    Queue("a");
    ASSERT_THAT(Take(1, 10, 10), SizeIs(1));
    now += 60;
    const std::vector<LeasedText> again = Take(1, 10, 10);
    ASSERT_THAT(again, SizeIs(1));
    EXPECT_EQ(Spent(), 10);
    ASSERT_TRUE(Begin(again[0]));
    now += 60;
    EXPECT_THAT(Take(1, 10, 10), IsEmpty()) << "the provider may charge both";
    EXPECT_THAT(Take(1, 10, 20), SizeIs(1));
    EXPECT_EQ(Spent(), 20);
}

TEST_F(OutboxContract, waitingTexts_haveTheirStates)
{
    Queue("a");
    Queue("b");
    const LeasedText text = Take(1).at(0);
    ASSERT_TRUE(Begin(text));
    now += 3;
    const std::vector<WaitingText> texts = store.WaitingTexts(10);
    ASSERT_THAT(texts, SizeIs(2));
    EXPECT_TRUE(texts[0].isLeased);
    EXPECT_EQ(texts[0].dueIn, 57);
    EXPECT_EQ(texts[0].attempts, 1);
    EXPECT_EQ(texts[0].age, 3);
    EXPECT_EQ(texts[0].kind, "mail");
    EXPECT_FALSE(texts[1].isLeased);
    EXPECT_EQ(texts[1].dueIn, 0);
}
