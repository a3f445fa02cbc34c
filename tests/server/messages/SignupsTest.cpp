// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/messages/SignupsFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(SignupsTest, message_containsTheNumberAndTheCodeOfTheDevice)
{
    Start();
    EXPECT_EQ(SignUp(" Aisha@Example.org"), Outcome::Sent);

    const std::vector<std::string> messages = Messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_THAT(messages[0], HasSubstr("To: aisha@example.org\n\nYour mobile device ID: 1\n"));
    EXPECT_EQ(Stored("SELECT id FROM device"), "") << "nothing is confirmed yet";
    EXPECT_EQ(Confirm(messages[0]), Confirmation::Confirmed);
    EXPECT_EQ(Stored("SELECT id FROM device"), "1");
    EXPECT_EQ(keys.address.Unseal(Stored("SELECT sealed_address FROM device")), "aisha@example.org");
}

TEST_F(SignupsTest, consent_isStoredInTheWordsOfThePage)
{
    Start();
    ASSERT_EQ(SignUp("aisha@example.org"), Outcome::Sent);

    const std::string words = Stored("SELECT consent_words FROM signup");
    EXPECT_THAT(words, HasSubstr("you agree"));
    EXPECT_THAT(HomePage({.mail = true}).body, HasSubstr(words));
    EXPECT_EQ(Stored("SELECT consent_road FROM signup"), "form");
}

TEST_F(SignupsTest, limitsOfADomainAndInAll_areReportedOnceAnHour)
{
    limits = {3, 1, 2};
    Start();
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    EXPECT_EQ(SignUp("omar@example.org"), Outcome::TooMany);
    EXPECT_EQ(SignUp("omar@example.com"), Outcome::Sent);
    EXPECT_EQ(SignUp("omar@example.net"), Outcome::TooMany);
    EXPECT_THAT(reports, ElementsAre("sign-ups are refused: the limit of a domain is reached",
                                     "sign-ups are refused: the limit of a day is reached"));
    EXPECT_EQ(SignUp("omar@example.net"), Outcome::TooMany);
    EXPECT_EQ(reports.size(), 2U);
    elapsed += std::chrono::hours(1);
    EXPECT_EQ(SignUp("omar@example.net"), Outcome::TooMany);
    EXPECT_EQ(reports.size(), 3U);
}

TEST_F(SignupsTest, limitOfANetwork_isForAnHour)
{
    Start();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(SignUp("a" + std::to_string(i) + "@example.org"), Outcome::Sent);
    }
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::TooMany);
    EXPECT_EQ(SignUp("aisha@example.org", "192.0.2.2"), Outcome::Sent);
    elapsed += std::chrono::hours(1);
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
}

TEST_F(SignupsTest, failingSpool_isReportedAndCountsInNoLimit)
{
    Start();
    fs::rename(folder.File("spool"), folder.File("moved"));
    for (int i = 0; i < 21; ++i) {
        EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Failed);
    }
    EXPECT_THAT(reports, testing::Each(HasSubstr(folder.File("spool") + ": ")));
    EXPECT_EQ(Stored("SELECT id FROM signup"), "");

    fs::rename(folder.File("moved"), folder.File("spool"));
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
}

TEST_F(SignupsTest, failingStore_sendsNothingAndCountsInNoLimit)
{
    Start();
    Database(folder.File("store.db")).Execute("ALTER TABLE signup RENAME TO hidden");
    for (int i = 0; i < 21; ++i) {
        EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Failed);
    }
    EXPECT_THAT(reports, testing::Each(HasSubstr("store.db: ")));
    EXPECT_THAT(Messages(), IsEmpty());

    Database(folder.File("store.db")).Execute("ALTER TABLE hidden RENAME TO signup");
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
}

TEST_F(SignupsTest, manyAtOnceForOneAddress_sendAsManyAsTheLimit)
{
    Start();
    std::vector<std::future<Outcome>> outcomes;
    for (int i = 0; i < 16; ++i) {
        outcomes.push_back(std::async(std::launch::async,
                                      [this, i] { return SignUp("aisha@example.org", std::to_string(i)); }));
    }
    int sent = 0;
    for (std::future<Outcome>& outcome : outcomes) {
        sent += outcome.get() == Outcome::Sent ? 1 : 0;
    }
    EXPECT_EQ(sent, 3);
    EXPECT_EQ(Messages().size(), 3U);
}

TEST_F(SignupsTest, dropOld_isDoneByTheStore)
{
    Start();
    ASSERT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    now += std::chrono::minutes(31);
    boost::asio::io_context context;
    auto done = boost::asio::co_spawn(context, signups->DropOld(), boost::asio::use_future);
    context.run();
    done.get();

    EXPECT_EQ(fs::file_size(folder.File("store.db-wal")), 0U) << "where the address was";
    EXPECT_EQ(Stored("SELECT sealed_address FROM signup"), "");
}

TEST_F(SignupsTest, limitOfAnAddress_countsItsSubaddresses)
{
    limits.ofAnAddress = 2;
    Start();
    EXPECT_EQ(SignUp("aisha+1@example.org"), Outcome::Sent);
    EXPECT_EQ(SignUp("aisha+2@example.org"), Outcome::Sent);
    EXPECT_EQ(SignUp("aisha+3@example.org"), Outcome::TooMany);
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::TooMany);
    EXPECT_THAT(reports, IsEmpty());
    for (const char* const address : {"+aisha@example.org", "+omar@example.org", "+zaid@example.org"}) {
        EXPECT_EQ(SignUp(address), Outcome::Sent) << "a plus at the beginning is part of the name";
    }

    EXPECT_THAT(Messages(),
                testing::Contains(HasSubstr("To: aisha+1@example.org\n\nYour mobile device ID: 1")));
    EXPECT_THAT(Messages(),
                testing::Contains(HasSubstr("To: aisha+2@example.org\n\nYour mobile device ID: 2")));
}

// Many servers deliver each of them to one mailbox.
TEST_F(SignupsTest, limitOfAnAddress_countsItsSpellings)
{
    limits.ofAnAddress = 1;
    Start();
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    for (const char* const address :
         {"a.i.sha@example.org", "aisha-1@example.org", "aisha=1@example.org", "ai.sha+1@example.org"}) {
        EXPECT_EQ(SignUp(address), Outcome::TooMany) << address;
    }
    EXPECT_EQ(SignUp("aisha@sub.example.org"), Outcome::Sent);
}

TEST_F(SignupsTest, limitOfADomain_countsItsSubdomains)
{
    limits.ofADomain = 2;
    Start();
    EXPECT_EQ(SignUp("a@x.example.co.uk"), Outcome::Sent);
    EXPECT_EQ(SignUp("a@y.z.example.co.uk"), Outcome::Sent);
    EXPECT_EQ(SignUp("a@example.co.uk"), Outcome::TooMany);
    EXPECT_EQ(SignUp("a@another.co.uk"), Outcome::Sent);
    EXPECT_EQ(SignUp("a@co.uk"), Outcome::Sent);
}

TEST_F(SignupsTest, test_fromAPerson_isAnsweredWithACode)
{
    options.phonePrefixes = {"+44"};
    Start();
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "test"), Outcome::Sent);
    EXPECT_EQ(Stored("SELECT consent_road FROM signup"), "mail");
    EXPECT_THAT(HomePage({.signupAddress = "a@b.example"}).body,
                HasSubstr(Stored("SELECT consent_words FROM signup")));
    EXPECT_EQ(Confirm(Messages().at(0)), Confirmation::Confirmed);
    fs::remove_all(folder.File("spool"));
    fs::create_directory(folder.File("spool"));

    EXPECT_EQ(Take({AddressKind::Sms, "+442079460958"}, "Test!", Road::Text), Outcome::Sent);
    ASSERT_EQ(Messages().size(), 1U);
    EXPECT_EQ(Messages()[0].find("To: +442079460958\n\n"), 0U);
    EXPECT_LE(Messages()[0].size() - std::string("To: +442079460958\n\n\n").size(), 160U - 18)
        << "with a long ID";
    EXPECT_EQ(Confirm(Messages()[0]), Confirmation::Confirmed);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM device WHERE kind = 'sms'"), "1");
}

TEST_F(SignupsTest, code_namesStopOnlyWhereItIsRead)
{
    options.phonePrefixes = {"+44"};
    Start();
    const Address mail{AddressKind::Mail, "aisha@example.org"};
    const Address phone{AddressKind::Sms, "+442079460958"};
    ASSERT_EQ(Take(mail, "test"), Outcome::Sent);
    ASSERT_EQ(Take(phone, "test", Road::Text), Outcome::Sent);
    EXPECT_THAT(Messages(),
                testing::Each(testing::AllOf(testing::Not(HasSubstr("STOP")), HasSubstr("operator"))));
    fs::remove_all(folder.File("spool"));
    fs::create_directory(folder.File("spool"));

    options.isStopReadFromMail = true;
    options.isStopReadFromText = true;
    Start();
    ASSERT_EQ(Take(mail, "test"), Outcome::Sent);
    ASSERT_EQ(Take(phone, "test", Road::Text), Outcome::Sent);
    EXPECT_THAT(Messages(), testing::Each(HasSubstr("STOP")));
}

TEST_F(SignupsTest, otherTexts_areNotAnswered)
{
    options.phonePrefixes = {"+44"};
    Start();
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "hello"), Outcome::Nothing);
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "stop"), Outcome::Nothing);
    EXPECT_EQ(Take({AddressKind::Sms, "+4915112345678"}, "test", Road::Text), Outcome::NotOffered);
    EXPECT_EQ(Take({AddressKind::Ntfy, "https://ntfy.example.org/t"}, "test"), Outcome::NotOffered);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(SignupsTest, phoneNumbers_areServedOnlyByTheirPrefix)
{
    Start();
    EXPECT_FALSE(signups->Serves(AddressKind::Sms)) << "no prefix by default";
    EXPECT_EQ(Take({AddressKind::Sms, "+442079460958"}, "test", Road::Text), Outcome::NotOffered);
}

TEST_F(SignupsTest, form_takesNoPhoneNumber)
{
    options.phonePrefixes = {"+"};
    Start();
    EXPECT_EQ(SignUp("+44 20 7946 0958"), Outcome::PhoneNumber);
    EXPECT_EQ(SignUp("https://ntfy.example.org/t"), Outcome::NotOffered);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(SignupsTest, stop_endsTheMessagesOfItsSenderOnly)
{
    Start();
    ASSERT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    ASSERT_EQ(Confirm(Messages().at(0)), Confirmation::Confirmed);

    EXPECT_EQ(Take({AddressKind::Mail, "omar@example.org"}, "STOP aisha@example.org"), Outcome::Nothing);
    EXPECT_EQ(Take({AddressKind::Mail, "omar@example.org"}, "STOP"), Outcome::Nothing);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM device"), "1");
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "Stop."), Outcome::Stopped);
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM device"), "0");
    EXPECT_THAT(Messages(), testing::Contains(HasSubstr("the messages have ended")));
    EXPECT_EQ(Take({AddressKind::Mail, "aisha@example.org"}, "stop"), Outcome::Nothing);
    EXPECT_EQ(Messages().size(), 2U) << "only the first is answered";
}

// Two programs that answer each other, or a person who signs up a victim again and again.
TEST_F(SignupsTest, testAndStopInTurn_endAtTheLimitOfTheAddress)
{
    Start();
    const Address sender{AddressKind::Mail, "aisha@example.org"};
    for (int i = 0; i < 20; ++i) {
        (void)Take(sender, "test");
        (void)Take(sender, "stop");
    }
    EXPECT_EQ(Messages().size(), 6U) << "three codes, and three confirmations of their end";
}

TEST_F(SignupsTest, failuresOfADomain_endAtItsLimit)
{
    limits.ofADomain = 2;
    Start();
    fs::rename(folder.File("spool"), folder.File("moved"));
    for (int i = 0; i < 10; ++i) {
        const Address sender{AddressKind::Mail, "a" + std::to_string(i) + "@example.org"};
        EXPECT_EQ(Take(sender, "test"), Outcome::Failed);
    }
    EXPECT_EQ(reports.size(), 2U) << "attempts of the channel";
    fs::rename(folder.File("moved"), folder.File("spool"));
    EXPECT_EQ(Take({AddressKind::Mail, "a@example.com"}, "test"), Outcome::Sent);
    elapsed += std::chrono::hours(1);
    EXPECT_EQ(Take({AddressKind::Mail, "a@example.org"}, "test"), Outcome::Sent);
}

TEST_F(SignupsTest, numbersOfOneRange_countTogether)
{
    options.phonePrefixes = {"+44"};
    options.ofANumberRange = 2;
    Start();
    EXPECT_EQ(Take({AddressKind::Sms, "+442079460001"}, "test", Road::Text), Outcome::Sent);
    EXPECT_EQ(Take({AddressKind::Sms, "+442079460002"}, "test", Road::Text), Outcome::Sent);
    EXPECT_EQ(Take({AddressKind::Sms, "+442079460003"}, "test", Road::Text), Outcome::TooMany);
    EXPECT_EQ(Take({AddressKind::Sms, "+442079470003"}, "test", Road::Text), Outcome::Sent);
}

TEST_F(SignupsTest, inviteWord_isNeededIfThereIsOne)
{
    options.invites = {"juma-2026", "other"};
    Start();
    const Address sender{AddressKind::Mail, "aisha@example.org"};
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::NotInvited);
    EXPECT_EQ(Take(sender, "test"), Outcome::NotInvited);
    EXPECT_EQ(Take(sender, "test juma-202"), Outcome::NotInvited);
    EXPECT_EQ(Take(sender, "test juma-2026"), Outcome::Sent);
    invite = " other ";
    EXPECT_EQ(SignUp("aisha@example.org"), Outcome::Sent);
    for (int i = 0; i < 10; ++i) {
        (void)Take({AddressKind::Mail, "omar@example.org"}, "test guess" + std::to_string(i));
    }
    EXPECT_EQ(Take({AddressKind::Mail, "omar@example.org"}, "test other"), Outcome::TooMany)
        << "guessing is slow";
}
