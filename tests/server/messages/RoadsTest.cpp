// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Roads.h"

#include "messages/Channels.h"
#include "secrets/Keys.h"
#include "server/Becomes.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "server/messages/ChannelFixture.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <mutex>

using namespace beacond;
using testing::HasSubstr;

namespace fs = std::filesystem;

/// Folders of a mail server and of two phones, with a real store and a real spool for the answers.
class RoadsTest : public testing::Test
{
protected:
    RoadsTest()
    {
        for (const char* const name : {"mail/new", "mail/cur", "mail/tmp", "gammu", "smstools"}) {
            fs::create_directories(folder.File(name));
        }
        options.phonePrefixes = {"+44"};
    }
    void Start()
    {
        store = std::make_unique<StoreThread>(std::make_unique<SqliteStore>(folder.File("store.db")));
        const auto report = [this](std::string_view reason) {
            const std::lock_guard lock(mutex);
            reports.emplace_back(reason);
        };
        signups = std::make_unique<Signups>(keys, *store, channels, options, report);
        const RoadOptions taken{folder.File("mail"), "mx.example.net", folder.File("gammu"),
                                folder.File("smstools")};
        roads = std::make_unique<Roads>(keys, *store, *signups, taken, report, timing);
    }
    /// As the mail server does: complete in "tmp", then moved.
    void Deliver(const std::string& name, const std::string& sender, const std::string& text,
                 const std::string& result = "pass",
                 void (*place)(const fs::path&, const fs::path&) = &fs::rename)
    {
        Write(folder / "mail/tmp" / name,
              "Return-Path: <" + sender + ">\nAuthentication-Results: mx.example.net; dmarc=" + result +
                  " header.from=example.org\nFrom: " + sender + "\nSubject: Hello\n\n" + text + "\n");
        place(folder / "mail/tmp" / name, folder / "mail/new" / name);
        fs::remove(folder / "mail/tmp" / name);
    }
    [[nodiscard]] std::vector<std::string> Answers() const
    {
        std::vector<std::string> answers;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder.File("spool"))) {
            if (entry.path().extension() == ".txt") {
                answers.push_back(Read(entry.path()));
            }
        }
        return answers;
    }
    [[nodiscard]] bool IsEmpty(const std::string& name) const { return fs::is_empty(folder / name); }
    [[nodiscard]] bool HasReport(const std::string& part)
    {
        const std::lock_guard lock(mutex);
        return std::any_of(reports.begin(), reports.end(),
                           [&](const std::string& report) { return report.find(part) != std::string::npos; });
    }

    TemporaryFolder folder;
    Keys keys = Keys::FromFolder(folder.File("keys"));
    Channels channels{std::vector<ChannelOptions>{
        {.name = "mail", .type = "spool", .kind = "mail", .perSecond = 1000, .folder = folder.File("spool")},
        {.name = "sms", .type = "spool", .kind = "sms", .perSecond = 1000, .folder = folder.File("spool")}}};
    SignupOptions options;
    RoadTiming timing{.poll = std::chrono::milliseconds(50), .retry = std::chrono::milliseconds(20)};
    std::mutex mutex;
    std::vector<std::string> reports;
    std::unique_ptr<StoreThread> store;
    std::unique_ptr<Signups> signups;
    std::unique_ptr<Roads> roads;
};

TEST_F(RoadsTest, mail_isAnsweredOnceAndRemoved)
{
    timing.poll = std::chrono::hours(1); // the folder announces its changes
    Deliver("before", "aisha@example.org", "test");
    Start();
    ASSERT_TRUE(Becomes([&] { return Answers().size() == 1; }));
    Deliver("after", "omar@example.org", "test");
    ASSERT_TRUE(Becomes([&] { return Answers().size() == 2; }));
    ASSERT_TRUE(Becomes([&] { return IsEmpty("mail/new"); }));
    EXPECT_TRUE(IsEmpty("mail/cur"));
    EXPECT_THAT(Answers(), testing::Contains(HasSubstr("To: aisha@example.org\n")));
    EXPECT_THAT(Answers(), testing::Contains(HasSubstr("To: omar@example.org\n")));
    EXPECT_EQ(roads->Figures().handled, 2U);
}

// As Postfix does: complete in "tmp", then linked into "new".
TEST_F(RoadsTest, linkedMail_isAnsweredAtOnce)
{
    timing.poll = std::chrono::hours(1);
    Deliver("before", "aisha@example.org", "test");
    Start();
    ASSERT_TRUE(Becomes([&] { return IsEmpty("mail/new"); })) << "the folder is watched from now on";
    Deliver("linked", "omar@example.org", "test", "pass", &fs::create_hard_link);
    EXPECT_TRUE(Becomes([&] { return Answers().size() == 2; }));
}

TEST_F(RoadsTest, mailsThatAreNotForUs_areSetAsideUnread)
{
    Deliver("forged", "aisha@example.org", "test", "fail");
    Deliver("letter", "aisha@example.org", "As-salamu alaykum");
    Deliver("bounce", "", "test");
    Start();
    ASSERT_TRUE(Becomes([&] { return IsEmpty("mail/new"); }));
    for (const char* const name : {"forged:2,", "letter:2,", "bounce:2,"}) {
        EXPECT_TRUE(fs::exists(folder / "mail/cur" / name)) << name;
    }
    EXPECT_TRUE(Answers().empty());
    EXPECT_EQ(roads->Figures().notAuthenticated, 1U);
    EXPECT_EQ(roads->Figures().withoutWish, 1U);
    EXPECT_EQ(roads->Figures().withoutSender, 1U);
}

TEST_F(RoadsTest, mailThatCantBeSetAside_staysUntilItCan)
{
    fs::remove(folder / "mail/cur");
    Write(folder / "mail/cur", "");
    Deliver("letter", "aisha@example.org", "As-salamu alaykum");
    Start();
    ASSERT_TRUE(Becomes([&] { return roads->Figures().withoutWish >= 5; }));
    EXPECT_EQ(roads->Figures().abandoned, 0U);
    EXPECT_EQ(roads->Figures().waiting, 1U);
    EXPECT_FALSE(HasReport("three times"));
    EXPECT_TRUE(HasReport("can't be removed"));
    fs::remove(folder / "mail/cur");
    EXPECT_TRUE(Becomes([&] { return fs::exists(folder / "mail/cur/letter:2,"); }));
    EXPECT_TRUE(Becomes([&] { return roads->Figures().setAside == 1 && roads->Figures().waiting == 0; }));
}

// They contain addresses and texts. A mail with a flag is one that the operator has read.
TEST_F(RoadsTest, filesSetAside_areDeletedAfterThirtyDays)
{
    fs::create_directory(folder / "gammu/other");
    const auto now = fs::file_time_type::clock::now();
    const struct
    {
        const char* name;
        std::chrono::hours age;
        bool isKept;
    } rows[] = {{"mail/cur/old:2,", std::chrono::hours(721), false},
                {"mail/cur/read:2,S", std::chrono::hours(721), true},
                {"mail/cur/young:2,", std::chrono::hours(719), true},
                {"gammu/other/old.txt", std::chrono::hours(721), false},
                {"gammu/other/young.txt", std::chrono::hours(719), true}};
    for (const auto& row : rows) {
        Write(folder / row.name, "x");
        fs::last_write_time(folder / row.name, now - row.age);
    }
    Start();
    EXPECT_TRUE(
        Becomes([&] { return !fs::exists(folder / rows[0].name) && !fs::exists(folder / rows[3].name); }));
    for (const auto& row : rows) {
        EXPECT_EQ(fs::exists(folder / row.name), row.isKept) << row.name;
    }
}

TEST_F(RoadsTest, textMessages_areTakenFromBothPrograms)
{
    Write(folder / "gammu" / "IN20261122_203045_00_+442079460001_00.txt", "Test");
    Write(folder / "gammu" / "IN20261122_203045_01_+4915112345678_00.txt", "test");
    Write(folder / "gammu" / "IN20261122_203045_02_Provider_00.txt", "test");
    Write(folder / "smstools" / "GSM1.AbCdEf", "From: 442079460002\nFrom_TOA: 91 international\n\ntest");
    Write(folder / "smstools" / "GSM1.locked", "From: 442079460003\nFrom_TOA: 91 international\n\ntest");
    Write(folder / "smstools" / "GSM1.locked.LOCK", "");
    Start();
    ASSERT_TRUE(Becomes([&] { return Answers().size() == 2; }));
    EXPECT_THAT(Answers(), testing::Contains(HasSubstr("To: +442079460001\n")));
    EXPECT_THAT(Answers(), testing::Contains(HasSubstr("To: +442079460002\n")));
    ASSERT_TRUE(Becomes([&] { return !fs::exists(folder / "gammu/IN20261122_203045_02_Provider_00.txt"); }));
    EXPECT_TRUE(fs::exists(folder / "gammu/other/IN20261122_203045_02_Provider_00.txt"));
    EXPECT_FALSE(fs::exists(folder / "gammu/other/IN20261122_203045_01_+4915112345678_00.txt"));
    EXPECT_TRUE(fs::exists(folder / "smstools/GSM1.locked"));
    fs::remove(folder / "smstools/GSM1.locked.LOCK");
    EXPECT_TRUE(Becomes([&] { return Answers().size() == 3; }));
}

TEST_F(RoadsTest, failingChannel_keepsTheMailUntilItWorks)
{
    fs::rename(folder.File("spool"), folder.File("moved"));
    Deliver("a", "aisha@example.org", "test");
    Start();
    ASSERT_TRUE(Becomes([&] { return roads->Figures().delayed >= 5; }))
        << "more often than a crashing message";
    EXPECT_TRUE(fs::exists(folder / "mail/new/a"));
    fs::rename(folder.File("moved"), folder.File("spool"));
    EXPECT_TRUE(Becomes([&] { return Answers().size() == 1; }));
    EXPECT_TRUE(Becomes([&] { return IsEmpty("mail/new"); }));
}

TEST_F(RoadsTest, failingChannel_givesUpAnOldMail)
{
    fs::rename(folder.File("spool"), folder.File("moved"));
    Deliver("a", "aisha@example.org", "test");
    fs::last_write_time(folder / "mail/new/a", fs::file_time_type::clock::now() - std::chrono::hours(2));
    Start();
    EXPECT_TRUE(Becomes([&] { return fs::exists(folder / "mail/cur/a:2,"); }));
    EXPECT_EQ(roads->Figures().abandoned, 1U);
}

TEST_F(RoadsTest, mailThatEndedTheServiceThreeTimes_isSetAside)
{
    Deliver("a", "aisha@example.org", "test");
    const auto file = IncomingFolder(FolderFormat::Maildir, folder.File("mail")).Open("a");
    ASSERT_TRUE(file.has_value());
    {
        SqliteStore rows(folder.File("store.db"));
        const std::string id = keys.lookup.Hash("incoming", "mail " + file->identity);
        for (int i = 0; i < 3; ++i) {
            ASSERT_EQ(rows.BeginIncoming(id, 0), IncomingState::Begun);
        }
    }
    Start();
    EXPECT_TRUE(Becomes([&] { return fs::exists(folder / "mail/cur/a:2,"); }));
    EXPECT_TRUE(Answers().empty());
    EXPECT_TRUE(HasReport("three times"));
}

TEST_F(RoadsTest, killAfterTheAnswer_isNotAnsweredAgain)
{
    Deliver("a", "aisha@example.org", "test");
    const auto file = IncomingFolder(FolderFormat::Maildir, folder.File("mail")).Open("a");
    {
        SqliteStore rows(folder.File("store.db"));
        const std::string id = keys.lookup.Hash("incoming", "mail " + file->identity);
        ASSERT_EQ(rows.BeginIncoming(id, 0), IncomingState::Begun);
        rows.EndIncoming(id, IncomingKept::ForDays);
    }
    Start();
    EXPECT_TRUE(Becomes([&] { return IsEmpty("mail/new"); }));
    EXPECT_TRUE(Answers().empty());
}

TEST_F(RoadsTest, missingFolder_isReportedOnceAndFollowedLater)
{
    fs::remove_all(folder.File("mail"));
    Start();
    ASSERT_TRUE(Becomes([&] { return HasReport("mail/new: No such file"); }));
    fs::create_directories(folder.File("mail/new"));
    fs::create_directories(folder.File("mail/tmp"));
    Deliver("a", "aisha@example.org", "letter");
    EXPECT_TRUE(Becomes([&] { return fs::exists(folder / "mail/cur/a:2,"); })) << "cur is created";
    const std::lock_guard lock(mutex);
    EXPECT_EQ(reports.size(), 1U);
}

TEST_F(RoadsTest, lostReply_isTriedAgain)
{
    std::atomic<int> mails{0};
    MailScript script("dot", [&](Conversation& client) {
        if (++mails > 1) {
            client.Write("250 taken\r\n");
        }
    });
    const ScriptedServer provider(std::ref(script));
    channels = Channels{{SmtpOptions(provider.Port())}};
    Deliver("a", "aisha@example.org", "test");
    Start();
    EXPECT_TRUE(Becomes([&] { return IsEmpty("mail/new"); }));
    EXPECT_EQ(mails, 2);
    EXPECT_EQ(roads->Figures().delayed, 1U);
    Database database(folder.File("store.db"));
    Statement rows = database.Run("SELECT COUNT(*) FROM signup");
    ASSERT_TRUE(rows.Step());
    EXPECT_EQ(rows.Integer(0), 2) << "the first code may have arrived";
}

TEST_F(RoadsTest, repliesThatAreAlwaysLost_endAtTheLimitOfTheAddress)
{
    std::atomic<int> mails{0};
    MailScript script("dot", [&](Conversation&) { ++mails; });
    const ScriptedServer provider(std::ref(script));
    channels = Channels{{SmtpOptions(provider.Port())}};
    Deliver("a", "aisha@example.org", "test");
    Start();
    EXPECT_TRUE(Becomes([&] { return IsEmpty("mail/new"); }));
    EXPECT_EQ(mails, 3);
}

TEST_F(RoadsTest, stop_waitsForOneSignupOfAHangingChannelAtMost)
{
    const ScriptedServer provider([](Conversation& client) { client.Hang(); });
    ChannelOptions hanging = SmtpOptions(provider.Port());
    channels = Channels{{hanging}};
    for (int i = 0; i < 10; ++i) {
        Deliver("a" + std::to_string(i), "aisha" + std::to_string(i) + "@example.org", "test");
    }
    Deliver("b", "omar@example.org", "STOP");
    Start();
    EXPECT_TRUE(Becomes([&] { return !fs::exists(folder / "mail/new/b"); }));
    EXPECT_LE(provider.Connections(), 2);
    channels.Abort();
}

TEST_F(RoadsTest, manyLinks_hideNoMail)
{
    for (int i = 0; i < 3'000; ++i) {
        fs::create_symlink("nowhere", folder / "mail/new" / ("link" + std::to_string(i)));
    }
    Deliver("c", "aisha@example.org", "test");
    Start();
    EXPECT_TRUE(Becomes([&] { return Answers().size() == 1; }));
}

TEST_F(RoadsTest, foldersAndPipesAndLinks_areLeftAlone)
{
    fs::create_directory(folder / "mail/new/folder");
    ASSERT_EQ(::mkfifo((folder / "mail/new/a-pipe").c_str(), 0600), 0);
    Write(folder / "secret", "Return-Path: <a@example.org>\n\ntest\n");
    fs::create_symlink(folder / "secret", folder / "mail/new/b-link");
    Deliver("c", "aisha@example.org", "test");
    Start();
    EXPECT_TRUE(Becomes([&] { return Answers().size() == 1; }));
    EXPECT_TRUE(fs::exists(folder / "secret"));
}

TEST_F(RoadsTest, stop_byMail_endsTheMessages)
{
    Deliver("1", "aisha@example.org", "test");
    Deliver("2", "aisha@example.org", "STOP");
    Start();
    EXPECT_TRUE(Becomes([&] { return Answers().size() == 2; })) << "in the order of their names";
    EXPECT_THAT(Answers(), testing::Contains(HasSubstr("the messages have ended")));
}
