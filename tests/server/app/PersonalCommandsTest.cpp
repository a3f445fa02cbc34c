// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Address.h"
#include "secrets/KeyFolder.h"
#include "server/app/ServiceFixture.h"
#include "store/SqliteStore.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <random>

using namespace beacond;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

const Address kMail{AddressKind::Mail, "some.one@example.org"};
const Address kPhone{AddressKind::Sms, "+4915112345678"};
const Address kTopic{AddressKind::Ntfy, "https://ntfy.example.org/Prayers"};

} // namespace

/// The operator's commands about addresses, with the real program.
class PersonalCommandsTest : public ServiceFixture
{
protected:
    PersonalCommandsTest() { Configure("[messages]\nchannels = [\"spool\"]\n"); }

    [[nodiscard]] fs::path KeyFiles() const { return folder / "state/keys"; }
    [[nodiscard]] Keys CurrentKeys() const { return Keys::FromExistingFolder(KeyFiles()); }
    [[nodiscard]] SqliteStore Store() const { return SqliteStore((folder / "state/service.db").string()); }
    /// Makes the store and the keys, with a confirmed device of each address.
    void Register(const std::vector<Address>& addresses)
    {
        const Keys keys = Keys::FromFolder(KeyFiles());
        SqliteStore store = Store();
        for (const auto& [name, check] : {std::pair("identifier.key", keys.identifier.CheckHash()),
                                          {"address.key", keys.address.CheckHash()},
                                          {"index.key", keys.index.CheckHash()},
                                          {"lookup.key", keys.lookup.CheckHash()}}) {
            ASSERT_TRUE(store.IsWrittenWith(name, check));
        }
        for (const Address& address : addresses) {
            const Signup signup{std::string(NameOf(address.kind)),
                                keys.address.Seal(address.text),
                                AddressIndex(keys.index, address),
                                "code of " + address.text,
                                1800,
                                "form",
                                "the words of the page"};
            ASSERT_NE(store.SignUp(signup, {}).device, 0);
            ASSERT_EQ(store.Confirm("code of " + address.text, "pc of " + address.text),
                      Confirmation::Confirmed);
        }
    }
    void ExpectKept(const std::vector<Address>& addresses)
    {
        const Keys keys = CurrentKeys();
        SqliteStore store = Store();
        for (const Address& address : addresses) {
            const PersonalData data = store.DataOf(AddressIndex(keys.index, address));
            ASSERT_TRUE(data.device) << address.text;
            ASSERT_EQ(keys.address.Unseal(data.device->sealedAddress), address.text);
            ASSERT_EQ(data.installations, std::vector<std::string>{"pc of " + address.text});
        }
    }
};

// The arguments of a program can be seen by all accounts.
TEST_F(PersonalCommandsTest, addressFromStandardInput_isNotInTheArguments)
{
    Register({kMail});
    EXPECT_THAT(Run({"export", "-"}, kMail.text + "\n").output, HasSubstr(kMail.text));
    EXPECT_EQ(Run({"block", "-"}, kMail.text + "\n").status, 0);
    EXPECT_THAT(Run({"forget", "-"}, "").errors, HasSubstr("is no mail address"));
}

TEST_F(PersonalCommandsTest, forget_deletesTheDeviceOfAnyKindOfAddress)
{
    Register({kMail, kPhone, kTopic});
    const std::pair<const char*, const char*> rows[] = {
        {" Some.One@Example.org", "s...@example.org"},
        {"0049 151 1234-5678", "+49...78"},
        {"https://NTFY.example.org/Prayers", "https://ntfy.example.org/..."}};
    for (const auto& [typed, shown] : rows) {
        EXPECT_EQ(Run({"forget", typed}).output,
                  "The device of " + std::string(shown) + ", its texts and its sign-ups are deleted.\n");
        EXPECT_EQ(Run({"forget", typed}).errors, "dusk-beacond: nothing is kept of that address\n");
    }
}

TEST_F(PersonalCommandsTest, export_isAllThatIsKeptAsJson)
{
    Register({kMail});
    ASSERT_TRUE(Store().QueueText("pc of " + kMail.text, 3, "12:07", "SA-G104515"));
    const ProcessEnd end = Run({"export", kMail.text});

    EXPECT_EQ(end.status, 0) << end.errors;
    EXPECT_THAT(end.output, StartsWith("{"));
    const std::string hash = "70" // "p" of the hash of the installation
                             "63206f6620";
    for (const std::string part :
         {R"("address" : "some.one@example.org")", R"("kind" : "mail")", R"("source" : "form")",
          R"("words" : "the words of the page")", R"("prayer" : "Duhr")", R"("time" : "12:07")",
          R"("place" : "SA-G104515")", R"("confirmed" : "20)"}) {
        EXPECT_THAT(end.output, HasSubstr(part));
    }
    EXPECT_THAT(end.output, HasSubstr('"' + hash));
    EXPECT_EQ(Run({"export", kPhone.text}).errors, "dusk-beacond: nothing is kept of that address\n");
}

TEST_F(PersonalCommandsTest, block_refusesTheSignupsOfTheAddressUntilItIsUnblocked)
{
    Register({kMail});
    const unsigned short port = Serve();
    EXPECT_EQ(Run({"block", kMail.text}).output,
              "s...@example.org is blocked; its device, its texts and its sign-ups are deleted.\n");
    EXPECT_EQ(Run({"forget", kMail.text}).status, 2) << "nothing is kept but that it is blocked";

    EXPECT_THAT(PostSignup(port, "address=some.one%2Btag%40example.org"), StartsWith("HTTP/1.1 429 "));
    EXPECT_THAT(PostSignup(port, "address=other.one%40example.org"), StartsWith("HTTP/1.1 200 "));
    const std::string list = Run({"block", "--list"}).output;
    EXPECT_THAT(list, MatchesRegex("20[0-9-]*T[0-9:]*Z\tmail\t[0-9a-f]*\n"));
    EXPECT_THAT(Run({"export", kMail.text}).output, HasSubstr("\"blocked_since\""));

    EXPECT_EQ(Run({"unblock", kMail.text}).output, "s...@example.org can sign up again.\n");
    EXPECT_EQ(Run({"unblock", kMail.text}).errors, "dusk-beacond: that address is not blocked\n");
    EXPECT_THAT(PostSignup(port, "address=some.one%40example.org"), StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(Terminate().errors, Not(HasSubstr("sign-ups are refused")));
}

TEST_F(PersonalCommandsTest, rotateKeys_sealsEachAddressWithNewKeys)
{
    Register({kMail, kPhone, kTopic});
    const std::string address = Read(KeyFiles() / "address.key");
    const std::string index = Read(KeyFiles() / "index.key");
    ASSERT_EQ(Run({"block", "other@example.org"}).status, 0);
    const ProcessEnd end = Run({"rotate-keys"});

    EXPECT_EQ(end.status, 0) << end.errors;
    // A device and the sign-up of its code, for each address.
    EXPECT_THAT(end.output, StartsWith("New keys seal 6 addresses. "));
    EXPECT_NE(Read(KeyFiles() / "address.key"), address);
    EXPECT_NE(Read(KeyFiles() / "index.key"), index);
    EXPECT_FALSE(HasNewKeys(KeyFiles()));
    ExpectKept({kMail, kPhone, kTopic});
    ASSERT_NE(Serve(), 0);
    EXPECT_EQ(Run({"unblock", "other@example.org"}).status, 0);
}

TEST_F(PersonalCommandsTest, rotateKeys_besideTheRunningService_isRefused)
{
    Register({kMail});
    ASSERT_NE(Serve(), 0);
    EXPECT_EQ(Run({"rotate-keys"}).errors,
              "dusk-beacond: state/keys: the keys are in use; stop the service first\n");
    ExpectKept({kMail});

    ASSERT_EQ(Terminate().status, 0);
    const KeyFolderLock replacing(KeyFiles(), KeyFolderLock::For::Replacing);
    EXPECT_EQ(Run({"serve"}).errors,
              "dusk-beacond: state/keys: the keys are being replaced; try again in a minute\n");
}

TEST_F(PersonalCommandsTest, rotateKeys_killedAtAnyInstant_losesNoAddress)
{
    constexpr int kAddresses = 300;
    constexpr int kRounds = 30;
    std::vector<Address> addresses;
    for (int i = 0; i < kAddresses; ++i) {
        addresses.push_back(
            {AddressKind::Mail, "a" + std::to_string(i) + "@example" + std::to_string(i) + ".org"});
    }
    Register(addresses);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(Run({"rotate-keys"}).status, 0);
    const auto whole =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::mt19937 chance(20'261'122);
    std::uniform_int_distribution<useconds_t> instant(0, static_cast<useconds_t>(whole.count() * 3 / 2));
    int changed = 0;
    int interrupted = 0;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        const std::string before = Read(KeyFiles() / "address.key");
        {
            const ServiceProcess rotating(Path(), {"rotate-keys", "--config", "service.toml"});
            ::usleep(instant(chance));
        } // killed
        interrupted += HasNewKeys(KeyFiles()) ? 1 : 0;
        const Address& any = addresses[static_cast<std::size_t>(round)];
        ASSERT_THAT(Run({"export", any.text}).output, HasSubstr('"' + any.text + '"'));
        changed += Read(KeyFiles() / "address.key") != before ? 1 : 0;
        ASSERT_FALSE(HasNewKeys(KeyFiles()));
        ASSERT_NO_FATAL_FAILURE(ExpectKept(addresses));
    }
    std::cout << kRounds << " kills: " << interrupted << " between the steps, " << changed
              << " with new keys\n";
    EXPECT_GT(changed, 0);
    EXPECT_LT(changed, kRounds);
}
