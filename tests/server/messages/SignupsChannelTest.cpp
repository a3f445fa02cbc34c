// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/messages/SignupsFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(SignupsTest, channelThatCouldNotDrain_isFull)
{
    perSecond = 0.005; // three texts in ten minutes
    channels = Channels{{SpoolOf("mail")}};
    Start();
    for (const char* const name : {"a", "b", "c"}) {
        SqliteStore rows(folder.File("store.db"), [this] { return Seconds(); });
        const Signup signup{.kind = "mail",
                            .sealedAddress = name,
                            .addressIndex = name,
                            .codeHash = name,
                            .lifetime = 60,
                            .consentSource = "form",
                            .consentText = "yes"};
        ASSERT_NE(rows.SignUp(signup, {}).device, 0);
        ASSERT_EQ(rows.Confirm(name, name), Confirmation::Confirmed);
    }
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Full);
    EXPECT_THAT(reports, ElementsAre(HasSubstr("within ten minutes")));
}

TEST_F(SignupsTest, fullChannel_answersAKnownAddressWithTheSamePage)
{
    perSecond = 0.0017; // one text in ten minutes
    channels = Channels{{SpoolOf("mail")}};
    Start();
    {
        SqliteStore rows(folder.File("store.db"), [this] { return Seconds(); });
        const Signup signup = SignupOf(keys, {AddressKind::Mail, "aisha@example.org"}, Road::Form, "code");
        ASSERT_NE(rows.SignUp(signup, {}).device, 0);
        ASSERT_EQ(rows.Confirm("code", "pc"), Confirmation::Confirmed);
    }
    EXPECT_EQ(SignUp("zaid@example.org"), Outcome::Full);
    EXPECT_THAT(Messages(), IsEmpty());
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Full);
    EXPECT_EQ(Messages().size(), 1U) << "the person can have lost the code";
}

TEST_F(SignupsTest, answers_areChargedToTheDay)
{
    channels = Channels{{Priced(10)}};
    options.spendPerDay = 25;
    Start();
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    ASSERT_EQ(Confirm(Messages().at(0)), Confirmation::Confirmed);
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "STOP"), Outcome::Stopped);
    EXPECT_EQ(Stored("SELECT amount FROM spend"), "20");
    EXPECT_EQ(SignUp("omar@example.org"), Outcome::Unaffordable);
    EXPECT_EQ(SignUp("omar@example.org"), Outcome::Unaffordable);
    EXPECT_EQ(Messages().size(), 2U);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM signup"), "1") << "a refused sign-up counts in no limit";
    EXPECT_THAT(reports, ElementsAre("sign-ups are refused: the spending of a day is reached"));
    now += std::chrono::hours(24);
    EXPECT_EQ(SignUp("omar@example.org"), Outcome::Sent);
}

TEST_F(SignupsTest, stop_beyondTheSpendingOfTheDay_isDoneWithoutAMessage)
{
    channels = Channels{{Priced(10)}};
    options.spendPerDay = 10;
    Start();
    ASSERT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    ASSERT_EQ(Confirm(Messages().at(0)), Confirmation::Confirmed);
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "STOP"), Outcome::Stopped);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM device"), "0");
    EXPECT_EQ(Messages().size(), 1U);
}

TEST_F(SignupsTest, answerThatIsNotAccepted_isNotCharged)
{
    channels = Channels{{Priced(10)}};
    options.spendPerDay = 10;
    Start();
    fs::rename(folder.File("spool"), folder.File("moved"));
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Failed);
    EXPECT_EQ(Stored("SELECT amount FROM spend"), "0");
    fs::rename(folder.File("moved"), folder.File("spool"));
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
}

// The provider may have sent the message all the same.
TEST_F(SignupsTest, answerToWhichTheProviderHasAnError_isChargedAndCountsInTheLimits)
{
    const ScriptedServer provider([](Conversation& client) {
        client.ReadRequest();
        client.Write("HTTP/1.1 500 x\r\nContent-Length: 0\r\n\r\n");
    });
    ChannelOptions channel = HttpOptionsTo(provider.Port());
    channel.price = 10;
    channels = Channels{{channel}};
    options.phonePrefixes = {"+44"};
    Start();
    for (int i = 0; i < 5; ++i) {
        (void)Take({AddressKind::Sms, "+442079460001"}, "test", Road::Hook);
    }
    EXPECT_EQ(provider.Connections(), 3);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM signup"), "3");
    EXPECT_EQ(Stored("SELECT amount FROM spend"), "30");
}

TEST_F(SignupsTest, busyChannel_countsForTheNetworkAndUsesNoTurnOfTheChannel)
{
    perSecond = 0.5;
    channels = Channels{{SpoolOf("mail")}};
    Start();
    std::vector<std::future<Outcome>> outcomes;
    for (int i = 0; i < 20; ++i) {
        outcomes.push_back(std::async(
            std::launch::async, [this, i] { return SignUp("a" + std::to_string(i) + "@example.org"); }));
    }
    for (std::future<Outcome>& outcome : outcomes) {
        outcome.wait();
    }
    EXPECT_LE(Messages().size(), 3U);
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::TooMany);
    EXPECT_EQ(SignUp("aisha@example.org", "192.0.2.2"), Outcome::Sent) << "within three seconds";
}

TEST_F(SignupsTest, hangingProvider_delaysNoAnswerOfAnotherChannel)
{
    const ScriptedServer provider([](Conversation& client) { client.Hang(); });
    ChannelOptions hanging = SmtpOptions(provider.Port());
    hanging.timeout = std::chrono::seconds(10);
    channels = Channels{{hanging, SpoolOf("sms")}};
    options.phonePrefixes = {"+44"};
    Start();
    std::vector<std::future<Outcome>> outcomes;
    for (int i = 0; i < 10; ++i) {
        outcomes.push_back(std::async(std::launch::async, [this, i] {
            return SignUp("a@d" + std::to_string(i) + ".example", std::to_string(i));
        }));
    }
    ASSERT_TRUE(Becomes([&] { return provider.Connections() >= hanging.connections; }));
    auto other = std::async(std::launch::async, [this] {
        return Take({AddressKind::Sms, "+442079460001"}, "test", Road::Text);
    });
    EXPECT_EQ(other.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    channels.Abort();
    EXPECT_EQ(other.get(), Outcome::Sent);
}

TEST_F(SignupsTest, outcomes_areCounted)
{
    Start();
    (void)SignUp("aisha@example.org");
    (void)SignUp("nobody");
    (void)Take({AddressKind::Mail, "aisha@example.org"}, "hello");
    EXPECT_EQ(signups->Counts()[static_cast<std::size_t>(Outcome::Sent)], 1U);
    EXPECT_EQ(signups->Counts()[static_cast<std::size_t>(Outcome::NoAddress)], 1U);
    EXPECT_EQ(signups->Counts()[static_cast<std::size_t>(Outcome::Nothing)], 1U);
    EXPECT_EQ(Signups::kOutcomeNames[static_cast<std::size_t>(Outcome::Failed)], "failed");
}
