// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Hooks.h"

#include "messages/Channels.h"
#include "messages/Signups.h"
#include "secrets/Keys.h"
#include "server/ErrorOf.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_future.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

using namespace beacond;
using testing::HasSubstr;
using Result = Hooks::Result;

namespace fs = std::filesystem;

/// A provider's hook with a real store and a real spool for the answers.
class HooksTest : public testing::Test
{
protected:
    HooksTest()
    {
        Write(folder / "secret", "0123456789abcdef\n");
        options.name = "provider";
        options.proof = "secret";
        options.header = "X-Secret";
        options.secretFile = folder.File("secret");
        options.sender = "From";
        options.text = "Body";
        options.id = "Id";
    }
    void Start()
    {
        hooks.reset();
        signups.reset();
        store = std::make_unique<StoreThread>(
            std::make_unique<SqliteStore>(folder.File("store.db"), [this] { return Seconds(); }));
        SignupOptions rules;
        rules.phonePrefixes = {"+44"};
        const Report report = [](std::string_view) {};
        signups = std::make_unique<Signups>(keys, *store, channels, rules, report);
        hooks = std::make_unique<Hooks>(keys, *store, *signups, std::vector{options}, report);
    }
    Result Post(const std::string& body, const std::string& proof = "0123456789abcdef",
                const std::string& name = "provider")
    {
        boost::asio::io_context context;
        auto result =
            boost::asio::co_spawn(context, hooks->Post(name, proof, body, now, {}), boost::asio::use_future);
        context.run();
        return result.get();
    }
    void Tidy()
    {
        boost::asio::io_context context;
        auto done = boost::asio::co_spawn(context, signups->DropOld(), boost::asio::use_future);
        context.run();
        done.get();
    }
    [[nodiscard]] std::int64_t Seconds() const { return now.time_since_epoch().count(); }
    [[nodiscard]] std::size_t Answers() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder.File("spool")), fs::directory_iterator()));
    }

    TemporaryFolder folder;
    std::chrono::sys_seconds now{std::chrono::seconds(1'800'000'000)};
    Keys keys = Keys::FromFolder(folder.File("keys"));
    const Channels channels{std::vector<ChannelOptions>{
        {.name = "sms", .type = "spool", .kind = "sms", .perSecond = 1000, .folder = folder.File("spool")}}};
    HookOptions options;
    std::unique_ptr<StoreThread> store;
    std::unique_ptr<Signups> signups;
    std::unique_ptr<Hooks> hooks;
};

TEST_F(HooksTest, message_isAnsweredOnce)
{
    Start();
    const std::string body = "From=%2B442079460001&Body=test&Id=1";
    EXPECT_EQ(Post(body), Result::Done);
    EXPECT_EQ(Post(body), Result::Done);
    now += std::chrono::hours(71);
    EXPECT_EQ(Post(body), Result::Done);
    EXPECT_EQ(Answers(), 1U);
    EXPECT_EQ(Post("From=%2B442079460001&Body=test&Id=2"), Result::Done);
    EXPECT_EQ(Answers(), 2U);
}

TEST_F(HooksTest, replayAfterAYear_withoutATime_isNotAnswered)
{
    Start();
    const std::string body = "From=%2B442079460001&Body=test&Id=1";
    EXPECT_EQ(Post(body), Result::Done);
    now += std::chrono::hours(366 * 24);
    Tidy();
    EXPECT_EQ(Post(body), Result::Done);
    EXPECT_EQ(Answers(), 1U);
}

TEST_F(HooksTest, replayAfterAYear_withATime_isOldAndItsHashIsDropped)
{
    options.time = "Time";
    Start();
    const std::string body = "From=%2B442079460001&Body=test&Id=1&Time=" + std::to_string(Seconds());
    EXPECT_EQ(Post(body), Result::Done);
    now += std::chrono::hours(366 * 24);
    Tidy();
    EXPECT_EQ(Post(body), Result::Old);
    EXPECT_EQ(Answers(), 1U);
    Database database(folder.File("store.db"));
    Statement rows = database.Run("SELECT COUNT(*) FROM incoming");
    ASSERT_TRUE(rows.Step());
    EXPECT_EQ(rows.Integer(0), 0);
}

TEST_F(HooksTest, manyAtOnce_areAnsweredOnce)
{
    Start();
    std::vector<std::future<Result>> results;
    for (int i = 0; i < 8; ++i) {
        results.push_back(
            std::async(std::launch::async, [this] { return Post("From=%2B442079460001&Body=test&Id=1"); }));
    }
    for (std::future<Result>& result : results) {
        const Result found = result.get();
        EXPECT_TRUE(found == Result::Done || found == Result::Later);
    }
    EXPECT_EQ(Answers(), 1U);
}

TEST_F(HooksTest, forgedOrMalformed_isRefusedWithoutAnAnswer)
{
    Start();
    const std::string body = "From=%2B442079460001&Body=test&Id=1";
    EXPECT_EQ(Post(body, "0123456789abcdee"), Result::Forged);
    EXPECT_EQ(Post(body, "0123456789abcde"), Result::Forged);
    EXPECT_EQ(Post(body, ""), Result::Forged);
    EXPECT_EQ(Post(body, "0123456789abcdef", "other"), Result::Unknown);
    EXPECT_EQ(Post("From=%2B442079460001&Body=test"), Result::Malformed) << "no identifier";
    EXPECT_EQ(Post("From=%2B442079460001&Body=test&Id=" + std::string(600, '1')), Result::Malformed);
    EXPECT_EQ(Post("From=Provider&Body=test&Id=3"), Result::Done) << "repeating it would not help";
    EXPECT_EQ(Post("From=2079460001&Body=test&Id=4"), Result::Done) << "perhaps another country's number";
    EXPECT_EQ(Post("From=%2B4915112345678&Body=test&Id=5"), Result::Done) << "outside the prefixes";
    EXPECT_EQ(Answers(), 0U);
    EXPECT_EQ(hooks->Figures()[static_cast<std::size_t>(Result::Forged)], 3U);
}

TEST_F(HooksTest, hmac_isThatOfTheBody)
{
    options.proof = "hmac-sha256";
    Start();
    const std::string body = "From=%2B442079460001&Body=test&Id=1";
    // printf '%s' "$body" | openssl dgst -sha256 -hmac 0123456789abcdef
    const std::string hex = "0b2dfaa1b7ace46e838d3c10dfe7a4367315064adffbab99181288b1059f6401";
    const std::string base64 = "Cy36obes5G6DjTwQ3+ekNnMVBkrf+6uZGBKIsQWfZAE=";
    EXPECT_EQ(Post(body + "&", hex), Result::Forged);
    EXPECT_EQ(Post(body, hex.substr(2)), Result::Forged);
    EXPECT_EQ(Post(body, hex + "00"), Result::Forged);
    EXPECT_EQ(Post(body, "0123456789abcdef"), Result::Forged);
    EXPECT_EQ(Post(body, hex), Result::Done);
    EXPECT_EQ(Post(body, "sha256=" + hex), Result::Done);
    EXPECT_EQ(Post(body, base64), Result::Done);
    EXPECT_EQ(Answers(), 1U);
}

TEST_F(HooksTest, json_isReadByPaths)
{
    options.format = "json";
    options.sender = "data.from.number";
    options.senderPrefix = "+";
    options.text = "data.parts.1.text";
    options.id = "data.id";
    Start();
    const std::string part = R"("parts":[{"text":"hello"},{"text":"test"}])";
    EXPECT_EQ(Post(R"({"data":{"id":7,"from":{"number":442079460001},)" + part + "}}"), Result::Done);
    EXPECT_EQ(Answers(), 1U);
    EXPECT_EQ(Post(R"({"data":{"id":"8","from":{"number":"442079460001"},)" + part + "}}"), Result::Done);
    EXPECT_EQ(Answers(), 2U);
    for (const std::string body :
         {R"({"data":{"id":"9"}})", R"({"data":{"id":"10","from":[],"parts":{}}})"}) {
        EXPECT_EQ(Post(body), Result::Done) << body;
    }
    for (const std::string body :
         {"", "{", "[]", "null", R"({"data":[]})", R"({"data":{"id":{}}})", R"({"data":{"id":""}})"}) {
        EXPECT_EQ(Post(body), Result::Malformed) << body;
    }
    EXPECT_EQ(Post(std::string(16'000, '[')), Result::Malformed);
    EXPECT_EQ(Answers(), 2U);
}

TEST_F(HooksTest, time_mustBeOfThisDay)
{
    options.time = "Time";
    Start();
    const std::string message = "From=%2B442079460001&Body=hello&Id=1&Time=";
    EXPECT_EQ(Post(message + std::to_string(Seconds())), Result::Done);
    EXPECT_EQ(Post(message + std::to_string(Seconds() - 86'400)), Result::Done);
    EXPECT_EQ(Post(message + std::to_string(Seconds() - 86'401)), Result::Old);
    EXPECT_EQ(Post(message + std::to_string(Seconds() + 900)), Result::Done);
    EXPECT_EQ(Post(message + std::to_string(Seconds() + 901)), Result::Old);
    EXPECT_EQ(Post(message + std::to_string(Seconds() * 1000)), Result::Done);
    EXPECT_EQ(Post(message), Result::Malformed);
}

TEST_F(HooksTest, failure_isRepeatedByTheProvider)
{
    Start();
    fs::rename(folder.File("spool"), folder.File("moved"));
    const std::string body = "From=%2B442079460001&Body=test&Id=1";
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Post(body), Result::Later);
    }
    fs::rename(folder.File("moved"), folder.File("spool"));
    EXPECT_EQ(Post(body), Result::Done);
    EXPECT_EQ(Answers(), 1U);
}

TEST_F(HooksTest, secret_missingOrShort_isAnError)
{
    for (const char* const secret : {"", "0123456789abcde\n"}) {
        Write(folder / "secret", secret);
        EXPECT_THAT(ErrorOf<HookError>([&] { return Hook(options); }), HasSubstr("at least 16 characters"));
    }
    fs::remove(folder.File("secret"));
    EXPECT_THROW(Hook{options}, HookError);
}

TEST(Hook, messageTime_isReadInThreeForms)
{
    const std::chrono::sys_seconds time{std::chrono::seconds(1'795'341'600)};
    for (const char* const text :
         {"1795341600", "1795341600123", "2026-11-22T10:00:00Z", "2026-11-22 10:00:00.25Z",
          "2026-11-22T11:30:00+01:30", "2026-11-22T05:00:00-0500"}) {
        EXPECT_EQ(ParseMessageTime(text), time) << text;
    }
    for (const char* const text :
         {"", "now", "17953416001234", "2026-11-22T10:00:00", "2026-02-30T10:00:00Z", "2026-11-22T25:00:00Z",
          "2026-11-22T10:00:00+1", "2026-11-22T10:00:00.", "-6-11-22T10:00:00Z", "2026-11-22T10:00:00+01:"}) {
        EXPECT_EQ(ParseMessageTime(text), std::nullopt) << text;
    }
}
