// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/store/StoreContract.h"

#include <gtest/gtest.h>

using namespace beacond;
using Limit = SignupResult::Limit;

class RoadsContract : public StoreContract
{
protected:
    static constexpr std::int64_t kDay = 24 * kHour;
    static constexpr std::int64_t kLease = 60;

    IncomingState Begin(const std::string& message, std::int64_t lease = kLease)
    {
        return store.BeginIncoming(message, lease);
    }
};

TEST_F(RoadsContract, incoming_isHandledOnce)
{
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
    EXPECT_EQ(Begin("b"), IncomingState::Begun);
    store.EndIncoming("a", IncomingKept::ForDays);

    EXPECT_EQ(Begin("a"), IncomingState::Done);
    now += 3 * kDay;
    store.DropOldIncoming();
    EXPECT_EQ(Begin("a"), IncomingState::Done) << "kept for three days";
    now += 1;
    store.DropOldIncoming();
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
}

TEST_F(RoadsContract, incoming_keptAlways_staysDone)
{
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
    store.EndIncoming("a", IncomingKept::Always);
    for (const std::int64_t step : {1'000 * kDay, -2'000 * kDay}) {
        now += step;
        store.DropOldIncoming();
        EXPECT_EQ(Begin("a"), IncomingState::Done);
    }
}

TEST_F(RoadsContract, incoming_begunByAnother_isBusyForItsLease)
{
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
    now += kLease - 1;
    EXPECT_EQ(Begin("a"), IncomingState::Busy);
    now += 1;
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
    EXPECT_EQ(Begin("a", 0), IncomingState::Begun) << "without others the end of a caller is its own";
}

TEST_F(RoadsContract, incoming_begunThreeTimes_isAbandoned)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Begin("a", 0), IncomingState::Begun);
    }
    EXPECT_EQ(Begin("a", 0), IncomingState::Abandoned);
}

TEST_F(RoadsContract, incoming_returned_countsAsNotBegun)
{
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Begin("a"), IncomingState::Begun);
        store.ReturnIncoming("a");
    }
    store.EndIncoming("a", IncomingKept::ForDays);
    store.ReturnIncoming("a");
    EXPECT_EQ(Begin("a"), IncomingState::Done) << "the end stays";
    store.ReturnIncoming("unknown");
}

TEST_F(RoadsContract, incoming_clockSetBack_blocksNothing)
{
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
    EXPECT_EQ(Begin("b"), IncomingState::Begun);
    store.EndIncoming("b", IncomingKept::ForDays);
    now -= 2 * kDay;
    EXPECT_EQ(Begin("a"), IncomingState::Begun);
    store.DropOldIncoming();
    EXPECT_EQ(Begin("b"), IncomingState::Begun) << "a row dated ahead would stay too long";
}

TEST_F(RoadsContract, stop_deletesTheDeviceAndItsTexts)
{
    Register("a", "code", "pc");
    Register("b", "other", "mac");
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_TRUE(store.Stop("index a"));

    EXPECT_TRUE(store.Outbox(10).empty());
    EXPECT_FALSE(store.QueueText("pc", 2, "5:07", "SA-G1"));
    EXPECT_TRUE(store.QueueText("mac", 2, "5:07", "SA-G1"));
    EXPECT_FALSE(store.Stop("index a"));
    EXPECT_FALSE(store.Stop("index unknown"));
}

TEST_F(RoadsContract, stop_endsTheCodesOfTheAddress)
{
    Register("a", "used", "pc");
    SignUp("a", "pending");
    EXPECT_TRUE(store.Stop("index a"));

    EXPECT_EQ(store.Confirm("used", "pc"), Confirmation::Unknown) << "a repetition must not undo it";
    EXPECT_EQ(store.Confirm("pending", "pc"), Confirmation::Unknown);
    Database database(folder.File("store.db"));
    Statement left =
        database.Run("SELECT COUNT(*) FROM signup WHERE sealed_address IS NOT NULL OR consent_words <> ''");
    left.Step();
    EXPECT_EQ(left.Integer(0), 0);
}

TEST_F(RoadsContract, stop_ofAPendingSignup_isOneUntilItsCodeExpires)
{
    SignUp("a", "code");
    EXPECT_TRUE(store.Stop("index a"));
    EXPECT_FALSE(store.Stop("index a"));
    SignUp("a", "second");
    now += 1801;
    EXPECT_FALSE(store.Stop("index a"));
}

TEST_F(RoadsContract, stop_keepsTheLimitOfTheAddress)
{
    for (const char* const code : {"1", "2", "3"}) {
        EXPECT_NE(SignUp("a", code), 0);
        store.Stop("index a");
    }
    EXPECT_EQ(SignUp("a", "4"), 0);
    now += kDay;
    EXPECT_NE(Register("a", "5", "pc"), 0);
    EXPECT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
}

TEST_F(RoadsContract, signUp_beyondTheDevicesOfAKind_isForKnownAddressesOnly)
{
    SignupLimits limits;
    limits.devicesOfKind = 1;
    Signup phone = SignupOf("phone", "1");
    phone.kind = "sms";
    EXPECT_EQ(store.SignUp(phone, limits).exceeded, Limit::None);
    phone.codeHash = "2";
    const SignupResult renewed = store.SignUp(phone, limits);
    EXPECT_EQ(renewed.exceeded, Limit::None) << "the same address";
    EXPECT_FALSE(renewed.isFull);
    Signup second = SignupOf("second", "3");
    second.kind = "sms";
    EXPECT_EQ(store.SignUp(second, limits).exceeded, Limit::Devices) << "the first can still be confirmed";
    now += kDay;
    EXPECT_EQ(store.SignUp(second, limits).exceeded, Limit::None) << "the codes of the first have expired";
    ASSERT_EQ(store.Confirm("3", "pc"), Confirmation::Confirmed);

    phone.codeHash = "4";
    EXPECT_EQ(store.SignUp(phone, limits).exceeded, Limit::Devices);
    second.codeHash = "7";
    const SignupResult known = store.SignUp(second, limits);
    EXPECT_EQ(known.exceeded, Limit::None);
    EXPECT_TRUE(known.isFull);
    EXPECT_EQ(store.SignUp(SignupOf("mail", "5"), limits).exceeded, Limit::None);
    limits.devicesOfKind = 0;
    EXPECT_EQ(store.SignUp(SignupOf("another", "6"), limits).exceeded, Limit::Devices);
}
