// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/Files.h"
#include "server/TemporaryFolder.h"
#include "server/messages/ChannelFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace beacond;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

SendResult SendMail(const ChannelOptions& options, const OutgoingMessage& message = MailTo("a@example.org"))
{
    return Channels({options}).ForKind("mail")->Send(message);
}

ScriptedServer::Script Reply(const std::string& reply)
{
    return [reply](Conversation& client) {
        client.Write(reply);
        client.Hang();
    };
}

} // namespace

TEST(SmtpChannel, mail_hasItsFieldsAndIsAcceptedOnOneConnection)
{
    MailScript script;
    const ScriptedServer server(std::ref(script));
    const Channels channels({SmtpOptions(server.Port())});
    OutgoingMessage message = MailTo("a@example.org");
    message.text += "\n.\nend";
    EXPECT_EQ(channels.ForKind("mail")->Send(message).handover, Handover::Accepted);
    EXPECT_EQ(channels.ForKind("mail")->Send(message).handover, Handover::Accepted);

    EXPECT_EQ(server.Connections(), 1);
    EXPECT_THAT(
        script.Received(),
        AllOf(HasSubstr("EHLO mosque.example\r\n"), HasSubstr("MAIL FROM:<beacon@mosque.example>"),
              HasSubstr("RCPT TO:<a@example.org>\r\n"),
              HasSubstr("\r\nFrom: Dusk Beacon <beacon@mosque.example>\r\n"),
              HasSubstr(
                  "\r\nTo: <a@example.org>\r\nSubject: Maghrib\r\nMessage-ID: <text-1@mosque.example>\r\n"),
              HasSubstr("\r\nAuto-Submitted: auto-generated\r\n"),
              HasSubstr("\r\nList-Unsubscribe: <mailto:stop@mosque.example?subject=STOP>\r\n"),
              HasSubstr("\r\n\r\nMaghrib 18:42\r\n..\r\nend\r\n.\r\n")));
}

TEST(SmtpChannel, fault_tellsWhetherTheServerMayHaveTheMail)
{
    const ScriptedServer::Script hang = [](Conversation& client) { client.Hang(); };
    const ScriptedServer::Script close = [](Conversation&) {};
    const ScriptedServer::Script drip = [](Conversation& client) { client.Drip('2'); };
    const struct
    {
        const char* name;
        const char* at;
        ScriptedServer::Script script;
        Handover handover;
    } rows[] = {
        {"hangs before the greeting", "greeting", hang, Handover::RetryLater},
        {"drips its greeting", "greeting", drip, Handover::RetryLater},
        {"closes at once", "greeting", close, Handover::RetryLater},
        {"is overloaded", "greeting", Reply("421 busy\r\n"), Handover::RetryLater},
        {"refuses the sender", "MAIL", Reply("550 no\r\n"), Handover::RetryLater},
        {"refuses the address", "RCPT", Reply("550 no\r\n"), Handover::Refused},
        {"defers the address", "RCPT", Reply("450 later\r\n"), Handover::RetryLater},
        {"closes before the text", "DATA", close, Handover::RetryLater},
        {"refuses the text", "dot", Reply("554 no\r\n"), Handover::Refused},
        {"defers the text", "dot", Reply("451 later\r\n"), Handover::RetryLater},
        {"hangs after the text", "dot", hang, Handover::Unknown},
        {"drips after the text", "dot", drip, Handover::Unknown},
        {"closes after the text", "dot", close, Handover::Unknown},
        {"answers with nonsense", "dot", Reply("hello\r\n"), Handover::Unknown},
    };
    for (const auto& row : rows) {
        MailScript script(row.at, row.script);
        const ScriptedServer server(std::ref(script));
        const auto begin = std::chrono::steady_clock::now();
        const SendResult result = SendMail(SmtpOptions(server.Port()));
        EXPECT_EQ(result.handover, row.handover) << row.name << ": " << result.reason;
        EXPECT_FALSE(result.reason.empty()) << row.name;
        EXPECT_THAT(result.reason, Not(HasSubstr("example.org"))) << row.name;
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4)) << row.name;
    }
}

TEST(SmtpChannel, serverThatCantBeReached_isTriedLater)
{
    ChannelOptions options = SmtpOptions(1);
    EXPECT_EQ(SendMail(options).handover, Handover::RetryLater);
    options.server = "mail.invalid:25";
    EXPECT_EQ(SendMail(options).handover, Handover::RetryLater);
}

TEST(SmtpChannel, serverWithoutTls_getsNeitherPasswordNorMail)
{
    const TemporaryFolder folder;
    Write(folder / "password", "secret\n");
    MailScript script("", {}, "250-AUTH PLAIN\r\n");
    const ScriptedServer server(std::ref(script));
    ChannelOptions options = SmtpOptions(server.Port());
    options.user = "beacon";
    options.passwordFile = folder / "password";
    options.tls = "starttls";
    EXPECT_EQ(SendMail(options).handover, Handover::RetryLater);
    EXPECT_THAT(script.Received(), AllOf(Not(HasSubstr("AUTH")), Not(HasSubstr("MAIL"))));

    options.tls = "none";
    EXPECT_EQ(SendMail(options).handover, Handover::Accepted);
    EXPECT_THAT(script.Received(), HasSubstr("AUTH PLAIN"));
}

TEST(SmtpChannel, lineBreaks_addNoFieldNoCommandAndNoRecipient)
{
    MailScript script;
    const ScriptedServer server(std::ref(script));
    for (const char* const address :
         {"a@example.org\r\nRCPT TO:<b@example.org>", "a@example.org\nBcc: b@example.org", "a@example.org>",
          "a@example.org,b@example.org", "A@example.org", ""}) {
        EXPECT_EQ(SendMail(SmtpOptions(server.Port()), MailTo(address)).handover, Handover::Refused)
            << address;
    }
    EXPECT_EQ(server.Connections(), 0);

    OutgoingMessage message = MailTo("a@example.org");
    message.subject = "Maghrib\r\nBcc: b@example.org\r\n\r\nbody";
    message.id = "1\r\nBcc: c@example.org";
    message.text = "text\r\n.\r\nRCPT TO:<d@example.org>";
    EXPECT_EQ(SendMail(SmtpOptions(server.Port()), message).handover, Handover::Accepted);
    const std::string received = script.Received();
    for (const char* const injected : {"\nBcc", "\rBcc", "\nRCPT TO:<d"}) {
        EXPECT_THAT(received, Not(HasSubstr(injected)));
    }
}

TEST(SmtpChannel, abort_endsAMailUnderWay)
{
    MailScript script("dot", [](Conversation& client) { client.Hang(); });
    const ScriptedServer server(std::ref(script));
    ChannelOptions options = SmtpOptions(server.Port());
    options.timeout = std::chrono::seconds(60);
    const Channels channels({options});
    std::jthread aborter([&] {
        while (script.Received().find("\r\n.\r\n") == std::string::npos) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        channels.Abort();
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(channels.ForKind("mail")->Send(MailTo("a@example.org")).handover, Handover::Unknown);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(channels.ForKind("mail")->Send(MailTo("a@example.org")).handover, Handover::RetryLater);
}
