// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/store/StoreContract.h"

#include <gmock/gmock.h>

using namespace beacond;
using testing::ElementsAre;
using testing::IsEmpty;
using Limit = SignupResult::Limit;

class SignupContract : public StoreContract
{
protected:
    Confirmation Confirm(const std::string& code, const std::string& installation)
    {
        return store.Confirm(code, installation);
    }
    /// The device that receives the texts of an installation; 0 for none.
    std::int64_t DeviceOf(const std::string& installation)
    {
        now += 6 * kHour + 1;
        return store.QueueText(installation, 1, "5:07", "SA-G1") ? store.Outbox(1000).back().device : 0;
    }
    std::string ConsentOfTheDevice()
    {
        Database database(folder.File("store.db"));
        Statement words = database.Run("SELECT consent_words FROM device");
        return words.Step() ? words.Text(0) : std::string();
    }
    /// The number of rows in the file that contain a text of an address.
    std::int64_t RowsWith(const std::string& address)
    {
        Database database(folder.File("store.db"));
        Statement rows = database.Run("SELECT (SELECT COUNT(*) FROM device WHERE sealed_address = ?1) + "
                                      "(SELECT COUNT(*) FROM signup WHERE sealed_address = ?1)");
        rows.BindBytes("sealed " + address).Step();
        return rows.Integer(0);
    }
};

TEST_F(SignupContract, confirm_codeOfASignup_createsTheDeviceOfTheInstallation)
{
    const std::int64_t device = SignUp("a", "code");

    EXPECT_EQ(Confirm("another", "pc"), Confirmation::Unknown);
    EXPECT_FALSE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Confirmed);
    EXPECT_EQ(DeviceOf("pc"), device);
}

TEST_F(SignupContract, confirm_afterTheLifetime_isExpired)
{
    SignUp("a", "code");
    now += 1800;
    SignUp("b", "second");
    now += 1;

    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Expired);
    EXPECT_EQ(Confirm("second", "pc"), Confirmation::Confirmed);
}

TEST_F(SignupContract, confirm_again_holdsForTheSameInstallationAndADay)
{
    Register("a", "code", "pc");
    now += 24 * kHour;
    store.DropOldSignups();

    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Confirmed);
    EXPECT_EQ(Confirm("code", "another pc"), Confirmation::Unknown);
    now += 1;
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Unknown);
}

TEST_F(SignupContract, signUp_again_leavesTheDeviceAndTheEarlierCodeAsTheyAre)
{
    const std::int64_t device = Register("a", "first", "first pc");
    Signup stranger = SignupOf("a", "third");
    stranger.consentText = "words of a stranger";

    EXPECT_EQ(SignUp("a", "second"), device);
    EXPECT_EQ(store.SignUp(stranger, {}).device, device);
    EXPECT_EQ(Confirm("second", "second pc"), Confirmation::Confirmed);
    EXPECT_EQ(Confirm("first", "first pc"), Confirmation::Confirmed);
    EXPECT_EQ(DeviceOf("first pc"), device);
    EXPECT_EQ(DeviceOf("second pc"), device);
    EXPECT_EQ(ConsentOfTheDevice(), "texts at prayer times");
}

TEST_F(SignupContract, confirm_olderCodeOfTheAddressLast_keepsTheNewerConsent)
{
    SignUp("a", "older");
    now += 60;
    Signup newer = SignupOf("a", "newer");
    newer.consentText = "newer words";
    ASSERT_NE(store.SignUp(newer, {}).device, 0);
    ASSERT_EQ(Confirm("newer", "pc"), Confirmation::Confirmed);
    ASSERT_EQ(Confirm("older", "second pc"), Confirmation::Confirmed);

    EXPECT_EQ(ConsentOfTheDevice(), "newer words");
}

TEST_F(SignupContract, confirm_newerDevice_replacesTheOneOfTheInstallation)
{
    Register("a", "code a", "pc");
    const std::int64_t newer = Register("b", "code b", "pc");

    EXPECT_EQ(DeviceOf("pc"), newer);
}

TEST_F(SignupContract, device_isDeletedWithItsLastInstallation)
{
    const std::int64_t first = Register("a", "code", "pc");
    Register("a", "second code", "second pc");
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    Register("b", "code b", "pc");
    EXPECT_EQ(store.Outbox(10).size(), 1U) << "the other installation still has it";

    Register("c", "code c", "second pc");
    EXPECT_THAT(store.Outbox(10), testing::ElementsAre(testing::Field(&OutboxRow::prayer, 0)));
    const LeasedText last = store.LeaseTexts({"mail", 10, 60}).texts.at(0);
    EXPECT_TRUE(store.EndSending(last.text.id, last.fence, TextEnd::Sent, 0));
    EXPECT_FALSE(store.DataOf("index a").device);
    now += 24 * kHour;
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Confirmed) << "a lost reply undoes nothing";
    EXPECT_EQ(DeviceOf("pc"), first);
}

TEST_F(SignupContract, formerDevice_isToldOnceAndThenDeleted)
{
    const std::int64_t former = Register("a", "code a", "pc");
    Register("b", "code b", "pc");
    EXPECT_EQ(Confirm("code b", "pc"), Confirmation::Confirmed);
    EXPECT_FALSE(store.QueueText("another pc", 1, "5:07", "SA-G1"));

    const std::vector<LeasedText> texts = store.LeaseTexts({"mail", 10, 60}).texts;
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_EQ(texts[0].text.device, former);
    EXPECT_EQ(texts[0].text.prayer, 0);
    EXPECT_EQ(texts[0].sealedAddress, "sealed a");
    EXPECT_TRUE(store.DataOf("index a").device) << "until it has been told";
    EXPECT_TRUE(store.EndSending(texts[0].text.id, texts[0].fence, TextEnd::Refused, 0));
    EXPECT_FALSE(store.DataOf("index a").device);
    EXPECT_TRUE(store.DataOf("index b").device);
}

TEST_F(SignupContract, formerDeviceThatCantBeTold_isDeletedAfterTenMinutes)
{
    Register("a", "code a", "pc");
    Register("b", "code b", "pc");
    now += kTextLifetime;
    EXPECT_EQ(store.DropOldTexts(), 1);
    EXPECT_FALSE(store.DataOf("index a").device);
    EXPECT_TRUE(store.DataOf("index b").device);
}

TEST_F(SignupContract, formerDeviceThatRegistersAgain_stays)
{
    Register("a", "code a", "pc");
    Register("b", "code b", "pc");
    Register("a", "second code", "another pc");
    EXPECT_THAT(store.Outbox(10), IsEmpty());
    now += kTextLifetime;
    store.DropOldTexts();
    EXPECT_TRUE(store.DataOf("index a").device);
}

TEST_F(SignupContract, dropOldSignups_unconfirmed_leavesNothingOfTheAddress)
{
    const std::int64_t device = SignUp("a", "code");
    now += 1800;
    store.DropOldSignups();
    EXPECT_EQ(RowsWith("a"), 1) << "the code is still valid";

    now += 1;
    store.DropOldSignups();
    EXPECT_EQ(RowsWith("a"), 0);
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Expired);
    now += 24 * kHour;
    store.DropOldSignups();
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Unknown);
    EXPECT_FALSE(store.Forget("index a"));
    EXPECT_NE(SignUp("b", "code b"), device) << "a number stands for one address";
}

TEST_F(SignupContract, dropOldSignups_confirmed_keepsTheDevice)
{
    const std::int64_t device = Register("a", "code", "pc");
    now += 24 * kHour + 1;
    store.DropOldSignups();

    EXPECT_EQ(RowsWith("a"), 1);
    EXPECT_EQ(DeviceOf("pc"), device);
    EXPECT_EQ(SignUp("a", "new code"), device);
}

TEST_F(SignupContract, signUp_beyondALimitOfTheDay_isRefused)
{
    const SignupLimits limits{2, 3, 4};
    const auto signUp = [&](const std::string& address, const std::string& domain) {
        Signup signup = SignupOf(address, "code " + std::to_string(now));
        signup.domainIndex = domain;
        now += 1;
        return store.SignUp(signup, limits).exceeded;
    };
    EXPECT_EQ(signUp("a", "x"), Limit::None);
    EXPECT_EQ(signUp("a", "x"), Limit::None);
    EXPECT_EQ(signUp("a", "x"), Limit::Address);
    EXPECT_EQ(signUp("b", "x"), Limit::None);
    EXPECT_EQ(signUp("c", "x"), Limit::Domain);
    EXPECT_EQ(signUp("d", "y"), Limit::None);
    EXPECT_EQ(signUp("e", "y"), Limit::InAll);

    now += 24 * kHour - 7;
    store.DropOldSignups();
    EXPECT_EQ(signUp("a", "x"), Limit::None) << "the first is a day old";
}

TEST_F(SignupContract, signUp_withoutADomain_hasNoLimitOfADomain)
{
    for (const char* const address : {"a", "b"}) {
        Signup signup = SignupOf(address, address);
        signup.domainIndex.clear();
        EXPECT_EQ(store.SignUp(signup, {3, 1, 10}).exceeded, Limit::None);
    }
}

TEST_F(SignupContract, withdraw_undoesASignupUntilItsCodeIsConfirmed)
{
    SignUp("a", "code");
    store.Withdraw("code");
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Unknown);
    EXPECT_EQ(RowsWith("a"), 0);
    for (const char* const code : {"1", "2", "3"}) {
        EXPECT_NE(SignUp("a", code), 0) << "it does not count";
    }

    ASSERT_EQ(Confirm("1", "pc"), Confirmation::Confirmed);
    store.Withdraw("1");
    EXPECT_EQ(Confirm("1", "pc"), Confirmation::Confirmed);
}

TEST_F(SignupContract, forget_deletesTheDeviceItsInstallationsItsTextsAndItsCodes)
{
    Register("a", "code", "pc");
    SignUp("a", "waiting");
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));

    EXPECT_TRUE(store.Forget("index a"));
    EXPECT_FALSE(store.Forget("index a"));
    EXPECT_THAT(store.Outbox(10), IsEmpty());
    EXPECT_EQ(DeviceOf("pc"), 0);
    EXPECT_EQ(Confirm("waiting", "pc"), Confirmation::Unknown);
    EXPECT_EQ(Confirm("code", "pc"), Confirmation::Unknown);
    EXPECT_EQ(RowsWith("a"), 0);
    SignUp("b", "code b");
    EXPECT_TRUE(store.Forget("index b")) << "a sign-up without a device";
}

TEST_F(SignupContract, signupsDatedFarAhead_doNotCountAndAreDropped)
{
    now += 365 * 24 * kHour;
    SignUp("a", "waiting");
    SignUp("a", "used");
    SignUp("a", "third");
    ASSERT_EQ(SignUp("a", "fourth"), 0);
    ASSERT_EQ(Confirm("used", "pc"), Confirmation::Confirmed);

    now -= 365 * 24 * kHour;
    EXPECT_NE(SignUp("a", "fourth"), 0);
    EXPECT_EQ(Confirm("waiting", "second pc"), Confirmation::Expired);
    store.DropOldSignups();
    EXPECT_EQ(Confirm("waiting", "second pc"), Confirmation::Unknown);
    EXPECT_EQ(Confirm("used", "pc"), Confirmation::Unknown);
    EXPECT_EQ(Confirm("fourth", "second pc"), Confirmation::Confirmed);
    EXPECT_NE(DeviceOf("pc"), 0) << "the device stays";
}
