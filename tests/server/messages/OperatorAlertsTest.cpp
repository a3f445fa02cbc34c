// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/OperatorAlerts.h"

#include <gmock/gmock.h>

using namespace beacond;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class OperatorAlertsTest : public testing::Test
{
protected:
    /// The notices after that time.
    std::vector<OperatorNotice> After(std::chrono::seconds time, const SendingFigures& figures)
    {
        now += time;
        return alerts.Update(figures, now);
    }
    static SendingFigures Failing(std::int64_t failures) { return {.failuresInARow = {{"mail", failures}}}; }

    const OperatorNotice kOld{"the oldest text in the outbox has waited for 5 minutes", false};
    const OperatorNotice kNotOld{"the outbox has no old texts any more", true};
    OperatorAlerts alerts{{5, 3}};
    OperatorAlerts::Time now;
};

TEST_F(OperatorAlertsTest, outbox_isToldAtTheLimitAndWhenItIsOver)
{
    EXPECT_THAT(After(0s, {.oldestWaiting = 299s}), IsEmpty());
    EXPECT_THAT(After(1s, {.oldestWaiting = 300s}), ElementsAre(kOld));
    EXPECT_THAT(After(1s, {.oldestWaiting = 301s}), IsEmpty());
    EXPECT_THAT(After(60s, {.oldestWaiting = 299s}), ElementsAre(kNotOld));
    EXPECT_THAT(After(60s, {.oldestWaiting = 0s}), IsEmpty());
}

TEST_F(OperatorAlertsTest, lastingEvent_isToldOnceAnHour)
{
    EXPECT_THAT(After(0s, {.oldestWaiting = 300s}), ElementsAre(kOld));
    EXPECT_THAT(After(3599s, {.oldestWaiting = 300s}), IsEmpty());
    EXPECT_THAT(After(1s, {.oldestWaiting = 300s}), ElementsAre(kOld));
    EXPECT_THAT(After(1s, {}), ElementsAre(kNotOld));
}

TEST_F(OperatorAlertsTest, eventThatBeginsAgain_isToldWithTheNextHour)
{
    EXPECT_THAT(After(0s, {.oldestWaiting = 300s}), ElementsAre(kOld));
    EXPECT_THAT(After(60s, {}), ElementsAre(kNotOld));
    EXPECT_THAT(After(60s, {.oldestWaiting = 300s}), IsEmpty());
    EXPECT_THAT(After(60s, {}), IsEmpty()) << "its begin was not told";
    EXPECT_THAT(After(60s, {.oldestWaiting = 300s}), IsEmpty());
    EXPECT_THAT(After(3600s, {.oldestWaiting = 300s}), ElementsAre(kOld));
}

TEST_F(OperatorAlertsTest, channel_isToldAfterFailuresInARowAndOverAfterASuccess)
{
    EXPECT_THAT(After(0s, Failing(2)), IsEmpty());
    EXPECT_THAT(After(1s, Failing(3)),
                ElementsAre(OperatorNotice{
                    "the channel \"mail\" fails: 3 messages in a row could not be sent", false}));
    EXPECT_THAT(After(1s, Failing(1)), IsEmpty()) << "counted anew after a success between two looks";
    EXPECT_THAT(After(1s, Failing(0)), ElementsAre(OperatorNotice{"the channel \"mail\" works again", true}));
}

TEST_F(OperatorAlertsTest, kindsOfEvents_areToldOnTheirOwn)
{
    const SendingFigures all{.oldestWaiting = 300s,
                             .failuresInARow = {{"mail", 3}, {"sms", 3}},
                             .spentToday = 80,
                             .spendPerDay = 100};
    EXPECT_EQ(After(0s, all).size(), 4U);
}

TEST_F(OperatorAlertsTest, spending_isToldFromFourFifthsOn)
{
    EXPECT_THAT(After(0s, {.spentToday = 79, .spendPerDay = 100}), IsEmpty());
    EXPECT_THAT(
        After(1s, {.spentToday = 80, .spendPerDay = 100}),
        ElementsAre(OperatorNotice{"80 of the 100 that messages may cost in a day are spent", false}));
    EXPECT_THAT(After(1s, {.spentToday = 0, .spendPerDay = 100}),
                ElementsAre(OperatorNotice{"the spending of the day is below 80 per cent again", true}));
    EXPECT_THAT(After(1s, {.spentToday = 80, .spendPerDay = 0}), IsEmpty()) << "no limit";
}
