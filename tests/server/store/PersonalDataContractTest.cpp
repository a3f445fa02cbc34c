// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Files.h"
#include "server/store/StoreContract.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace beacond;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Limit = SignupResult::Limit;

class PersonalDataContract : public StoreContract
{
protected:
    /// Calls DropSilentDevices twice a day for that number of days. Returns the number of deleted devices.
    std::int64_t PassDays(int days)
    {
        std::int64_t deleted = 0;
        for (int half = 0; half < 2 * days; ++half) {
            now += 12 * kHour;
            deleted += store.DropSilentDevices();
        }
        return deleted;
    }
    Limit SignUpWithBlockIndex(const std::string& address, const std::string& code)
    {
        Signup signup = SignupOf(address, code);
        signup.blockIndex = "block " + address;
        return store.SignUp(signup, {}).exceeded;
    }
    /// All bytes of the store's files.
    std::string Bytes()
    {
        std::string bytes;
        for (const auto& file : std::filesystem::directory_iterator(folder / "")) {
            bytes += Read(file.path());
        }
        return bytes;
    }
};

TEST_F(PersonalDataContract, dataOf_hasEverythingHeldAboutTheAddress)
{
    const std::int64_t consent = now;
    const std::int64_t device = Register("a", "code", "pc");
    Register("a", "second code", "other pc");
    Register("b", "code b", "pc of b");
    now += kHour;
    ASSERT_TRUE(store.QueueText("pc", 3, "12:07", "SA-G1"));
    SignUp("a", "waiting");

    const PersonalData data = store.DataOf("index a");
    ASSERT_TRUE(data.device);
    EXPECT_EQ(data.device->id, device);
    EXPECT_EQ(data.device->kind, "mail");
    EXPECT_EQ(data.device->sealedAddress, "sealed a");
    EXPECT_EQ(data.device->consentAt, consent);
    EXPECT_EQ(data.device->consentSource, "form");
    EXPECT_EQ(data.device->consentText, "texts at prayer times");
    EXPECT_THAT(data.installations, ElementsAre("other pc", "pc"));
    ASSERT_EQ(data.lastTexts.size(), 1U);
    EXPECT_EQ(data.lastTexts[0].prayer, 3);
    EXPECT_EQ(data.lastTexts[0].queuedAt, now);
    ASSERT_EQ(data.waiting.size(), 1U);
    EXPECT_EQ(data.waiting[0].time, "12:07");
    ASSERT_EQ(data.signups.size(), 3U);
    EXPECT_EQ(data.signups[0].confirmedAt, consent);
    EXPECT_EQ(data.signups[2].confirmedAt, 0);
    EXPECT_EQ(data.signups[2].codeExpiresAt, now + 1800);
}

TEST_F(PersonalDataContract, dataOf_unknownAddress_isEmpty)
{
    const PersonalData data = store.DataOf("index a");
    EXPECT_FALSE(data.device);
    EXPECT_THAT(data.signups, IsEmpty());
}

TEST_F(PersonalDataContract, block_deletesTheDeviceAndRefusesLaterSignups)
{
    Register("a", "code", "pc");
    SignUp("a", "waiting");
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_TRUE(store.Block({"block a", "mail", 0}, "index a"));

    EXPECT_THAT(store.Outbox(10), IsEmpty());
    EXPECT_EQ(store.Confirm("waiting", "pc"), Confirmation::Unknown);
    EXPECT_EQ(SignUpWithBlockIndex("a", "new code"), Limit::Blocked);
    EXPECT_EQ(SignUpWithBlockIndex("b", "code b"), Limit::None);
    EXPECT_FALSE(store.Block({"block a", "mail", 0}, "index a"));
    EXPECT_THAT(store.BlockedAddresses(), ElementsAre(BlockedAddress{"block a", "mail", now}));

    EXPECT_TRUE(store.Unblock("block a"));
    EXPECT_FALSE(store.Unblock("block a"));
    EXPECT_EQ(SignUpWithBlockIndex("a", "new code"), Limit::None);
}

TEST_F(PersonalDataContract, dropSilentDevices_deletesAfterAYearWithoutATextOrAConsent)
{
    Register("a", "code a", "pc of a");
    Register("b", "code b", "pc of b");
    Register("c", "code c", "pc of c");
    PassDays(300);
    ASSERT_TRUE(store.QueueText("pc of b", 1, "5:07", "SA-G1"));
    Register("c", "new code", "pc of c");

    EXPECT_EQ(PassDays(65), 0);
    EXPECT_EQ(PassDays(1), 1);
    EXPECT_FALSE(store.DataOf("index a").device);
    EXPECT_TRUE(store.DataOf("index b").device);
    EXPECT_EQ(PassDays(299), 0);
    EXPECT_EQ(PassDays(1), 2);
}

TEST_F(PersonalDataContract, dropSilentDevices_clockOfAnotherYear_deletesNothing)
{
    constexpr std::int64_t kYears = 3 * 365 * 24 * kHour;
    Register("a", "code", "pc");
    for (int jump = 0; jump < 20; ++jump) {
        now += kYears;
        EXPECT_EQ(PassDays(3), 0);
        now -= kYears;
        EXPECT_EQ(store.DropSilentDevices(), 0);
    }
    EXPECT_TRUE(store.DataOf("index a").device);
}

TEST_F(PersonalDataContract, dropSilentDevices_noCallForAYear_waitsForAWeek)
{
    Register("a", "code", "pc");
    now += 400 * 24 * kHour;

    EXPECT_EQ(PassDays(5), 0);
    EXPECT_EQ(PassDays(3), 1);
}

// Known on seven days in all must not mean seven days of one silence.
TEST_F(PersonalDataContract, dropSilentDevices_activeAgain_beginsANewWeek)
{
    Register("a", "code", "pc");
    EXPECT_EQ(PassDays(364), 0);
    ASSERT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_EQ(PassDays(1), 0);
    now += 400 * 24 * kHour;

    EXPECT_EQ(PassDays(5), 0) << "perhaps the clock has jumped";
    EXPECT_EQ(PassDays(3), 1);
}

TEST_F(PersonalDataContract, clearDeleted_leavesDeletedAddressesInNoFile)
{
    Register("a", "code a", "pc of a");
    Register("b", "code b", "pc of b");
    Register("c", "code c", "pc of c");
    EXPECT_TRUE(store.Forget("index a"));
    EXPECT_TRUE(store.Block({"block b", "mail", 0}, "index b"));
    store.Begin();
    EXPECT_TRUE(store.Stop("index c"));
    store.ClearDeleted();
    store.End();

    const std::string bytes = Bytes();
    for (const char* const deleted : {"sealed a", "sealed b", "sealed c"}) {
        EXPECT_THAT(bytes, Not(HasSubstr(deleted)));
    }
    EXPECT_THAT(bytes, HasSubstr("block b"));
}

TEST_F(PersonalDataContract, replaceAddresses_replacesEachAddressAndItsIndex)
{
    const std::int64_t device = Register("a", "code", "pc");
    SignUp("a", "waiting");
    SignUp("b", "expired");
    now += 1801;
    SignUp("c", "code c");
    store.DropOldSignups();
    ASSERT_TRUE(store.IsWrittenWith("address.key", "old"));

    store.ReplaceAddresses(
        [](const StoredAddress& stored) {
            EXPECT_EQ(stored.kind, "mail");
            return StoredAddress{stored.kind, "re" + stored.sealedAddress, "new " + stored.addressIndex};
        },
        {{"address.key", "new"}});

    const PersonalData data = store.DataOf("new index a");
    ASSERT_TRUE(data.device);
    EXPECT_EQ(data.device->id, device);
    EXPECT_EQ(data.device->sealedAddress, "resealed a");
    EXPECT_EQ(data.signups.size(), 1U) << "the confirmed one: the other has expired";
    EXPECT_EQ(store.DataOf("new index c").signups.size(), 1U);
    EXPECT_TRUE(store.QueueText("pc", 1, "5:07", "SA-G1"));
    EXPECT_EQ(store.Confirm("code c", "pc of c"), Confirmation::Confirmed);
    EXPECT_TRUE(store.DataOf("new index c").device);
    EXPECT_EQ(store.KeyCheck("address.key"), "new");
    const std::string bytes = Bytes();
    for (const char* const former : {"mailsealed", "index b"}) {
        EXPECT_THAT(bytes, Not(HasSubstr(former)));
    }
}

TEST_F(PersonalDataContract, replaceAddresses_failureInTheMiddle_changesNothing)
{
    Register("a", "code a", "pc of a");
    Register("b", "code b", "pc of b");
    ASSERT_TRUE(store.IsWrittenWith("address.key", "old"));
    int calls = 0;
    const auto failing = [&calls](const StoredAddress& stored) {
        if (++calls == 2) {
            throw StoreError("damaged");
        }
        return StoredAddress{stored.kind, "re" + stored.sealedAddress, "new " + stored.addressIndex};
    };

    EXPECT_THROW(store.ReplaceAddresses(failing, {{"address.key", "new"}}), StoreError);
    EXPECT_TRUE(store.DataOf("index a").device);
    EXPECT_EQ(store.KeyCheck("address.key"), "old");
    EXPECT_EQ(store.KeyCheck("index.key"), "");
}
