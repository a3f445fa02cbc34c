// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Becomes.h"
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "server/messages/ChannelFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>

using namespace beacond;
using testing::AllOf;
using testing::HasSubstr;

namespace {

const OutgoingMessage kText{"+4915112345678", "Maghrib", "Maghrib 18:42 \xC3\xA9&", "text-1", "en"};

SendResult Send(const ChannelOptions& options, const OutgoingMessage& message = kText)
{
    return Channels({options}).ForKind(options.kind)->Send(message);
}

// Answers one request with these bytes and closes.
ScriptedServer::Script Answer(const std::string& bytes)
{
    return [bytes](Conversation& client) {
        client.ReadRequest();
        client.Write(bytes);
    };
}

std::string Reply(int status, const std::string& body)
{
    return "HTTP/1.1 " + std::to_string(status) + " x\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nLocation: /elsewhere\r\n\r\n" + body;
}

} // namespace

TEST(HttpChannel, request_isFilledAndSentOnAKeptConnection)
{
    std::mutex mutex;
    std::string requests;
    const ScriptedServer server([&](Conversation& client) {
        for (std::string request = client.ReadRequest(); !request.empty(); request = client.ReadRequest()) {
            const std::lock_guard lock(mutex);
            requests += request + "\n";
            client.Write(Reply(201, "{\"id\": 1}"));
        }
    });
    const TemporaryFolder folder;
    Write(folder / "token", "s3cret\n");
    ChannelOptions options = HttpOptionsTo(server.Port());
    options.secretFile = folder / "token";
    options.headers = {"Authorization: Bearer {secret}"};
    const Channels channels({options});
    EXPECT_EQ(channels.ForKind("sms")->Send(kText).handover, Handover::Accepted);
    EXPECT_EQ(channels.ForKind("sms")->Send(kText).handover, Handover::Accepted);
    EXPECT_EQ(server.Connections(), 1);
    const std::lock_guard lock(mutex);
    EXPECT_THAT(requests,
                AllOf(HasSubstr("POST /send HTTP/1.1\r\n"), HasSubstr("\r\nAuthorization: Bearer s3cret\r\n"),
                      HasSubstr("\r\nContent-Type: application/x-www-form-urlencoded\r\n"),
                      HasSubstr("\r\n\r\nto=%2B4915112345678&text=Maghrib%2018%3A42%20%C3%A9%26")));
}

TEST(HttpChannel, fault_tellsWhetherTheProviderMayHaveTheText)
{
    const auto with = [](auto change) { return [change](ChannelOptions& options) { change(options); }; };
    const std::function<void(ChannelOptions&)> same = [](ChannelOptions&) {};
    const std::function<void(ChannelOptions&)> withTexts = with([](ChannelOptions& options) {
        options.acceptedText = "queued";
        options.refusedText = "unknown number";
    });
    const std::string endless = "HTTP/1.1 200 x\r\n\r\n" + std::string(1'000'000, 'a');
    const struct
    {
        const char* name;
        ScriptedServer::Script script;
        std::function<void(ChannelOptions&)> change;
        Handover handover;
    } rows[] = {
        {"hangs", [](Conversation& client) { client.Hang(); }, same, Handover::Unknown},
        {"closes after the request", Answer(""), same, Handover::Unknown},
        {"drips a header",
         [](Conversation& client) {
             client.ReadRequest();
             client.Write("HTTP/1.1 2");
             client.Drip('0');
         },
         same, Handover::Unknown},
        {"drips a body that does not matter",
         [](Conversation& client) {
             client.ReadRequest();
             client.Write("HTTP/1.1 200 x\r\n\r\n");
             client.Drip('a');
         },
         same, Handover::Accepted},
        {"drips a body that matters",
         [](Conversation& client) {
             client.ReadRequest();
             client.Write("HTTP/1.1 200 x\r\n\r\n");
             client.Drip('a');
         },
         withTexts, Handover::Unknown},
        {"sends an endless body", Answer(endless), same, Handover::Accepted},
        {"sends endless headers", Answer("HTTP/1.1 200 x\r\nA: " + std::string(90'000, 'a') + "\r\n\r\n"),
         same, Handover::Accepted},
        {"fails", Answer(Reply(500, "")), same, Handover::Unknown},
        {"is overloaded", Answer(Reply(503, "")), same, Handover::Unknown},
        {"is overloaded, and is known not to take the text then", Answer(Reply(503, "")),
         with([](ChannelOptions& options) { options.notTaken = {503}; }), Handover::RetryLater},
        {"sends an early hint and closes", Answer("HTTP/1.1 103 x\r\n\r\n"), same, Handover::Unknown},
        {"does not know the password", Answer(Reply(401, "")), same, Handover::RetryLater},
        {"has too many requests", Answer(Reply(429, "")), same, Handover::RetryLater},
        {"is behind a gateway that fails", Answer(Reply(502, "")), same, Handover::Unknown},
        {"refuses the text", Answer(Reply(400, "")), same, Handover::Refused},
        {"redirects", Answer(Reply(302, "")), same, Handover::Unknown},
        {"says 200 without the accepted text", Answer(Reply(200, "failed")), withTexts, Handover::Unknown},
        {"says 200 with the refused text", Answer(Reply(200, "unknown number")), withTexts,
         Handover::Refused},
        {"says 200 with the accepted text", Answer(Reply(200, "queued")), withTexts, Handover::Accepted},
        {"does not speak HTTP", Answer("hello\r\n"), same, Handover::Unknown},
    };
    for (const auto& row : rows) {
        const ScriptedServer server(row.script);
        ChannelOptions options = HttpOptionsTo(server.Port());
        row.change(options);
        const auto begin = std::chrono::steady_clock::now();
        const SendResult result = Send(options);
        EXPECT_EQ(result.handover, row.handover) << row.name << ": " << result.reason;
        EXPECT_EQ(server.Connections(), 1) << row.name;
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4)) << row.name;
    }
}

TEST(HttpChannel, providerThatCantBeReached_isTriedLater)
{
    EXPECT_EQ(Send(HttpOptionsTo(1)).handover, Handover::RetryLater);
    ChannelOptions options = HttpOptionsTo(1);
    options.url = "https://sms.invalid/send";
    EXPECT_EQ(Send(options).handover, Handover::RetryLater);
}

TEST(HttpChannel, keptConnectionThatEndsAfterTheRequest_isNotRepeated)
{
    std::atomic<int> requests = 0;
    const ScriptedServer server([&](Conversation& client) {
        while (!client.ReadRequest().empty() && ++requests != 2) {
            client.Write(Reply(200, ""));
        }
    });
    const Channels channels({HttpOptionsTo(server.Port())});
    EXPECT_EQ(channels.ForKind("sms")->Send(kText).handover, Handover::Accepted);
    EXPECT_EQ(channels.ForKind("sms")->Send(kText).handover, Handover::Unknown);
    EXPECT_EQ(requests, 2);
}

TEST(NtfyChannel, onlyTopicsOfListedServersAreSentTo)
{
    std::mutex mutex;
    std::string received;
    const ScriptedServer server([&](Conversation& client) {
        const std::lock_guard lock(mutex);
        received = client.ReadRequest();
        client.Write(Reply(200, "{}"));
    });
    const std::string base = "http://127.0.0.1:" + std::to_string(server.Port());
    ChannelOptions options = HttpOptionsTo(server.Port());
    options.type = options.kind = "ntfy";
    options.servers = {base};
    const auto send = [&](const std::string& address) {
        return Send(options, {address, "", "Maghrib 18:42", "text-1", "en"}).handover;
    };
    for (const std::string& address :
         {base, base + "/", base + "/a/b", base + "/a?b", base + "/../a", base + "9/a",
          base + "@example.org/a", std::string("http://example.org/a"), std::string("file:///etc/passwd"),
          base + "/a\r\nb"}) {
        EXPECT_EQ(send(address), Handover::Refused) << address;
    }
    EXPECT_EQ(server.Connections(), 0);
    EXPECT_EQ(send(base + "/mosque-1"), Handover::Accepted);
    const std::lock_guard lock(mutex);
    EXPECT_THAT(received,
                AllOf(HasSubstr("POST /mosque-1 HTTP/1.1\r\n"), HasSubstr("\r\n\r\nMaghrib 18:42")));
}

TEST(Channel, slots_keepToTheRateOfAllCallers)
{
    ChannelOptions options = HttpOptionsTo(1);
    options.perSecond = 2;
    const Channels channels({options});
    Channel& channel = *channels.ForKind("sms");
    const auto first = channel.TakeSlot(Channel::Use::Text);
    ASSERT_TRUE(first.has_value());
    std::optional<Channel::Clock::time_point> next = channel.TakeSlot(Channel::Use::Text);
    EXPECT_FALSE(next.has_value()) << "no slot is taken ahead";
    ASSERT_TRUE(Becomes([&] { return (next = channel.TakeSlot(Channel::Use::Text)).has_value(); }));
    EXPECT_EQ(*next - *first, std::chrono::milliseconds(500));
    EXPECT_EQ(channels.PerSecond("sms"), 2);
    EXPECT_EQ(channels.PerSecond("mail"), 0);
}

TEST(Channel, slots_alternateBetweenTextsAndAnswers)
{
    ChannelOptions options = HttpOptionsTo(1);
    options.perSecond = 8;
    const Channels channels({options});
    Channel& channel = *channels.ForKind("sms");
    int texts = 0;
    int answers = 0;
    ASSERT_TRUE(Becomes([&] {
        for (int worker = 0; worker < 4; ++worker) {
            texts += channel.TakeSlot(Channel::Use::Text) ? 1 : 0;
        }
        answers += channel.TakeSlot(Channel::Use::Answer) ? 1 : 0;
        return texts + answers >= 8;
    }));
    EXPECT_EQ(texts, 4);
    EXPECT_EQ(answers, 4);
}

TEST(Channel, refusals_countOnceForEachAddress)
{
    const ScriptedServer server([](Conversation& client) {
        while (!client.ReadRequest().empty()) {
            client.Write(Reply(400, ""));
        }
    });
    const Channels channels({HttpOptionsTo(server.Port())});
    Channel& channel = *channels.ForKind("sms");
    for (const char* const address : {"+491", "+491", "+492", "+491"}) {
        OutgoingMessage message = kText;
        message.address = address;
        EXPECT_EQ(channel.Send(message).handover, Handover::Refused);
    }
    EXPECT_EQ(channel.FailuresInARow(), 2);
}
