// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Sender.h"

#include "messages/TextWording.h"
#include "secrets/Keys.h"
#include "server/Becomes.h"
#include "server/TemporaryFolder.h"
#include "server/messages/ChannelFixture.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>

using namespace beacond;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// The sender with a real store and a provider on the loopback. The provider answers each request with
/// `status`.
class SenderTest : public testing::Test
{
protected:
    ~SenderTest() override { sender.reset(); }

    /// Registers phones and queues a text of Maghrib for each.
    void Queue(int count)
    {
        SqliteStore rows(folder.File("store.db"), Clock());
        rows.Begin();
        for (; count > 0; --count) {
            const std::string name = "+49" + std::to_string(++phones);
            (void)rows.SignUp({"sms", keys.address.Seal(name), name, name, 1800, "test", "test"},
                              {1000, 100'000, 100'000});
            ASSERT_EQ(rows.Confirm(name, name), Confirmation::Confirmed);
            ASSERT_TRUE(rows.QueueText(name, 5, "18:42", "SA-G1"));
        }
        rows.End();
    }
    void Start(std::int64_t spendPerDay = 0)
    {
        store =
            std::make_unique<StoreThread>(std::make_unique<SqliteStore>(folder.File("store.db"), Clock()));
        channels = std::make_unique<Channels>(std::vector{options});
        sender = std::make_unique<Sender>(keys, *store, *channels, SenderOptions{spendPerDay, "en"},
                                          [this](std::string_view reason) {
                                              const std::lock_guard lock(mutex);
                                              reports.emplace_back(reason);
                                          });
        sender->Start();
    }
    void Play(Conversation& client)
    {
        for (std::string request = client.ReadRequest(); !request.empty(); request = client.ReadRequest()) {
            {
                const std::lock_guard lock(mutex);
                requests.push_back(request.substr(request.find("\r\n\r\n") + 4));
            }
            if (status == 0) {
                client.Hang();
                return;
            }
            client.Write("HTTP/1.1 " + std::to_string(status) + " x\r\nContent-Length: 0\r\n\r\n");
        }
    }
    std::function<std::int64_t()> Clock()
    {
        return [this] { return now.load(); };
    }
    std::vector<std::string> Requests()
    {
        const std::lock_guard lock(mutex);
        return requests;
    }
    std::vector<std::string> Reports()
    {
        const std::lock_guard lock(mutex);
        return reports;
    }
    std::vector<WaitingText> Waiting()
    {
        return SqliteStore(folder.File("store.db"), Clock()).WaitingTexts(10);
    }
    [[nodiscard]] const SenderFigures& Figures() const { return sender->Figures(); }

    TemporaryFolder folder;
    Keys keys = Keys::FromFolder(folder.File("keys"));
    std::atomic<std::int64_t> now = 1'800'000'000;
    int phones = 1000;
    std::atomic<int> status = 200;
    std::mutex mutex;
    std::vector<std::string> requests;
    std::vector<std::string> reports;
    ScriptedServer server{[this](Conversation& client) { Play(client); }};
    ChannelOptions options = HttpOptionsTo(server.Port());
    std::unique_ptr<StoreThread> store;
    std::unique_ptr<Channels> channels;
    std::unique_ptr<Sender> sender;
};

TEST_F(SenderTest, texts_areSentOnceEachAndRemoved)
{
    constexpr int kTexts = 300;
    Queue(kTexts);
    Start();
    ASSERT_TRUE(Becomes([&] { return Figures().sent == kTexts; }));
    sender->Stop(Sender::Clock::now());

    const std::vector<std::string> sent = Requests();
    EXPECT_EQ(std::set(sent.begin(), sent.end()).size(), kTexts);
    EXPECT_THAT(sent, SizeIs(kTexts));
    EXPECT_THAT(sent, Contains("to=%2B491001&text=Maghrib%2018%3A42"));
    EXPECT_THAT(Waiting(), IsEmpty());
    EXPECT_EQ(Figures().doubled, 0U);
    EXPECT_EQ(sender->FiguresOf(0).accepted, kTexts);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(SenderTest, failure_isRetriedWithBackOffAndGivenUpAfterTenMinutes)
{
    status = 429;
    Queue(1);
    Start();
    std::vector<std::int64_t> attempts;
    for (int attempt = 1; attempt <= 7; ++attempt) {
        ASSERT_TRUE(Becomes([&] { return sender->FiguresOf(0).failed == std::uint64_t(attempt); }));
        ASSERT_TRUE(Becomes([&] { return !Waiting()[0].isLeased; }));
        attempts.push_back(Waiting()[0].dueIn);
        now += attempts.back();
    }
    EXPECT_THAT(attempts, testing::ElementsAre(5, 10, 20, 40, 80, 160, 160));
    EXPECT_EQ(sender->FiguresOf(0).failuresInARow, 7U);
    now += 600;
    ASSERT_TRUE(Becomes([&] { return Figures().givenUp == 1; }));
    EXPECT_THAT(Reports(), Contains("1 texts are given up: not sent within ten minutes"));
    EXPECT_THAT(Reports(), Contains("channel sms: status 429"));
    EXPECT_THAT(Reports(), Each(Not(HasSubstr("+49"))));
    EXPECT_EQ(Figures().sent, 0U);
    EXPECT_THAT(Waiting(), IsEmpty());
}

TEST_F(SenderTest, hangingProvider_isAskedAgainAndTheRepetitionIsCounted)
{
    status = 0;
    Queue(1);
    Start();
    ASSERT_TRUE(Becomes([&] { return Figures().uncertain == 1; }));
    EXPECT_EQ(Figures().doubled, 0U);
    status = 200;
    ASSERT_TRUE(Becomes([&] { return !Waiting()[0].isLeased; }));
    now += 5;
    ASSERT_TRUE(Becomes([&] { return Figures().sent == 1; }));
    EXPECT_EQ(Figures().doubled, 1U);
    EXPECT_EQ(Figures().retried, 1U);
    EXPECT_THAT(Requests(), SizeIs(2));
}

TEST_F(SenderTest, textThatIsAnsweredByAnError_isChargedForEachAttemptAndCounted)
{
    options.price = 10;
    status = 500;
    Queue(1);
    Start(25);
    ASSERT_TRUE(Becomes([&] { return Figures().uncertain == 1; }));
    ASSERT_TRUE(Becomes([&] { return !Waiting()[0].isLeased; }));
    now += 5;
    ASSERT_TRUE(Becomes([&] { return Figures().uncertain == 2; }));
    EXPECT_EQ(Figures().doubled, 1U);
    ASSERT_TRUE(Becomes([&] { return !Waiting()[0].isLeased; }));
    now += 10;
    ASSERT_TRUE(Becomes([&] { return Figures().isSpendReached == 1 && Figures().spentToday == 20; }));
    EXPECT_THAT(Requests(), SizeIs(2));
}

TEST_F(SenderTest, refusedTextsOfDifferentPhones_areAFailureOfTheChannel)
{
    status = 400;
    Queue(3);
    Start();
    ASSERT_TRUE(Becomes([&] { return Figures().refused == 3; }));
    EXPECT_EQ(channels->ForKind("sms")->FailuresInARow(), 3);
    EXPECT_TRUE(Becomes([&] { return sender->FiguresOf(0).failuresInARow == 3; }));
    status = 200;
    Queue(1);
    ASSERT_TRUE(Becomes([&] { return Figures().sent == 1; }));
    EXPECT_EQ(channels->ForKind("sms")->FailuresInARow(), 0);
}

TEST_F(SenderTest, refusedText_isRemoved)
{
    status = 400;
    Queue(1);
    Start();
    ASSERT_TRUE(Becomes([&] { return Figures().refused == 1; }));
    EXPECT_TRUE(Becomes([&] { return Waiting().empty(); }));
}

TEST_F(SenderTest, stop_finishesTheTextsUnderWayAndReturnsTheOthers)
{
    options.connections = 2;
    options.timeout = std::chrono::seconds(60);
    status = 0;
    Queue(5);
    Start();
    ASSERT_TRUE(Becomes([&] { return Requests().size() == 2; }));
    const auto begin = Sender::Clock::now();
    sender->Stop(begin + std::chrono::milliseconds(300));
    EXPECT_LT(Sender::Clock::now() - begin, std::chrono::seconds(3));

    const std::vector<WaitingText> waiting = Waiting();
    ASSERT_THAT(waiting, SizeIs(5));
    EXPECT_THAT(waiting, Each(testing::Field(&WaitingText::isLeased, false)));
    EXPECT_EQ(
        std::count_if(waiting.begin(), waiting.end(), [](const WaitingText& text) { return text.mayBeSent; }),
        2);
}

TEST_F(SenderTest, spending_holdsTheOthersBack)
{
    options.price = 10;
    Queue(5);
    Start(30);
    ASSERT_TRUE(Becomes([&] { return Figures().sent == 3 && Figures().isSpendReached == 1; }));
    ASSERT_TRUE(Becomes([&] { return Figures().spentToday == 30 && Figures().waiting == 2; }));
    EXPECT_THAT(Reports(), Contains("texts wait: the spending of a day is reached"));
}

TEST_F(SenderTest, rate_isKept)
{
    options.perSecond = 20;
    Queue(11);
    const auto begin = Sender::Clock::now();
    Start();
    ASSERT_TRUE(Becomes([&] { return Figures().sent == 11; }));
    EXPECT_GE(Sender::Clock::now() - begin, std::chrono::milliseconds(500));
}

TEST(TextWording, text_isThePrayerAndTheTimeOnly)
{
    EXPECT_EQ(PrayerText("en", 1, "5:07"), "Fajr 5:07");
    EXPECT_EQ(PrayerText("tr", 6, "20:15"), "Yatsı 20:15");
    for (const char* const time : {"", "5:7", "123:00", "a:bc", "12:34\n", "::12", "1::2"}) {
        EXPECT_EQ(PrayerText("en", 5, time), "Maghrib") << time;
    }
    EXPECT_THAT(PrayerText("en", 0, ""), testing::StartsWith("Dusk Beacon: another address has taken"));
    EXPECT_TRUE(IsTextLanguage("ar"));
    EXPECT_FALSE(IsTextLanguage("xx"));
    EXPECT_EQ(TextLanguages(), "en, ar, fr, id, tr, ur");
}
