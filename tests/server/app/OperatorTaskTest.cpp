// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/OperatorTask.h"

#include "messages/Address.h"
#include "secrets/Keys.h"
#include "server/Becomes.h"
#include "server/app/ProviderFixture.h"
#include "server/app/ServiceFixture.h"
#include "server/messages/ChannelFixture.h"
#include "store/SqliteStore.h"
#include "store/StoreThread.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <gmock/gmock.h>

#include <atomic>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <thread>

using namespace beacond;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

namespace fs = std::filesystem;

const Address kUnreachable{AddressKind::Ntfy, "https://ntfy.example.org/Prayers"};

} // namespace

/// The running service with a text that it can't send, since no channel serves its address.
class OperatorTaskTest : public ServiceFixture
{
protected:
    void QueueText(std::int64_t secondsAgo)
    {
        const Keys keys = Keys::FromFolder(folder / "state/keys");
        SqliteStore store((folder / "state/service.db").string(),
                          [secondsAgo] { return std::time(nullptr) - secondsAgo; });
        const Signup signup{"ntfy",
                            keys.address.Seal(kUnreachable.text),
                            AddressIndex(keys.index, kUnreachable),
                            "code",
                            1800,
                            "form",
                            "words"};
        ASSERT_NE(store.SignUp(signup, {}).device, 0);
        ASSERT_EQ(store.Confirm("code", "pc"), Confirmation::Confirmed);
        ASSERT_TRUE(store.QueueText("pc", 3, "12:07", "SA-G104515"));
    }
    /// The texts of all messages in the spool.
    std::string Spooled()
    {
        std::string texts;
        for (const auto& file : fs::directory_iterator(folder / "state/spool")) {
            texts += Read(file.path());
        }
        return texts;
    }
};

TEST_F(OperatorTaskTest, oldOutbox_isToldByMailAndInTheLogUntilItIsOver)
{
    Configure("[operator]\naddress = \"operator@example.org\"\n[messages]\nchannels = [\"spool\"]\n");
    QueueText(400);
    ASSERT_NE(Serve(), 0);

    EXPECT_TRUE(
        service->AwaitLog("\"level\":\"error\",\"message\":\"messages: the oldest text in the outbox has "
                          "waited for 6 minutes\""));
    EXPECT_TRUE(Becomes([&] {
        const std::string text = Spooled();
        return text.starts_with("To: operator@example.org\n") && text.ends_with(" waited for 6 minutes.\n");
    }));
    ASSERT_EQ(Run({"forget", kUnreachable.text}).status, 0);
    EXPECT_TRUE(Becomes(
        [&] { return Spooled().find("the outbox has no old texts any more.\n") != std::string::npos; }));
    EXPECT_THAT(Terminate().errors, Not(HasSubstr("operator@example.org")));
}

/// The same with a provider that fails, and a folder for the operator's topic.
class OperatorOfProviderTest : public ProviderFixture
{
protected:
    const std::string kOperator = "[[messages.channel]]\nname = \"ops\"\ntype = \"spool\"\nkind = \"ntfy\"\n"
                                  "folder = \"ops\"\n[operator]\n"
                                  "address = \"https://ntfy.example.org/ops\"\nchannel_failures = 2\n";
    [[nodiscard]] bool IsTold(const std::string& notice)
    {
        return Becomes([&] {
            for (const auto& file : fs::directory_iterator(folder / "ops")) {
                const std::string text = Read(file.path());
                if (file.path().extension() == ".txt" && text.find(notice) != std::string::npos) {
                    return true;
                }
            }
            return false;
        });
    }
};

TEST_F(OperatorOfProviderTest, failingChannel_isToldUntilItWorks)
{
    std::atomic<bool> isFailing = true;
    instead = [&](Conversation& client, const std::string&) {
        if (isFailing) {
            client.Write("HTTP/1.1 500 x\r\nContent-Length: 0\r\n\r\n");
        }
        return isFailing.load();
    };
    ConfigureProvider("", "", kOperator, "\"web\", \"ops\"");
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    for (int phone = 0; phone < 2; ++phone) {
        Register(port, "a@d" + std::to_string(phone) + ".example", std::to_string(phone));
    }
    for (int phone = 0; phone < 2; ++phone) {
        EXPECT_EQ(Call(port, std::to_string(phone), 5), "<root/>");
    }
    EXPECT_TRUE(IsTold("the channel \"web\" fails: "));
    EXPECT_TRUE(service->AwaitLog("\"level\":\"error\",\"message\":\"messages: the channel"));
    isFailing = false;
    EXPECT_TRUE(IsTold("the channel \"web\" works again."));
    EXPECT_EQ(Texts().size(), 2U);
}

TEST_F(OperatorOfProviderTest, spendingOfTheDay_isToldAndEndsTheSignups)
{
    ConfigureProvider("price = 10\n", "spend_per_day = 25\n", kOperator, "\"web\", \"ops\"");
    const unsigned short port = Serve();
    ASSERT_NE(port, 0);
    Register(port, "a@b.example", "pc");
    EXPECT_EQ(Call(port, "pc", 5), "<root/>");
    EXPECT_TRUE(IsTold("20 of the 25 that messages may cost in a day are spent."));
    EXPECT_THAT(PostSignup(port, "address=a%40c.example"),
                AllOf(HasSubstr("HTTP/1.1 503 "), HasSubstr("No more messages today")));
    EXPECT_EQ(CodeOf("a@c.example"), "");
    EXPECT_TRUE(service->AwaitLog("sign-ups are refused: the spending of a day is reached"));
}

TEST(OperatorTask, noticeWithoutAReceipt_isSentAgainWithItsId)
{
    std::mutex mutex;
    std::vector<std::string> requests;
    const ScriptedServer server([&](Conversation& client) {
        const std::string request = client.ReadRequest();
        const std::lock_guard lock(mutex);
        requests.push_back(request.substr(request.find("\r\n\r\n") + 4));
        client.Write(requests.size() == 1 ? "" : "HTTP/1.1 200 x\r\nContent-Length: 0\r\n\r\n");
    });
    ChannelOptions options = HttpOptionsTo(server.Port());
    options.kind = "mail";
    options.body = "id={id}";
    const Channels channels({options});
    const TemporaryFolder folder;
    StoreThread store(std::make_unique<SqliteStore>(folder.File("store.db")));
    Settings::Operator settings;
    settings.address = "operator@example.org";
    settings.limits.outboxMinutes = 0; // the event lasts from the beginning
    OperatorTask task(store, channels, settings, 0, std::chrono::seconds(1));
    boost::asio::io_context context;
    boost::asio::co_spawn(context, task.FollowSending(), boost::asio::detached);
    std::thread thread([&] { context.run(); });
    EXPECT_TRUE(Becomes([&] {
        const std::lock_guard lock(mutex);
        return requests.size() == 2;
    }));
    context.stop();
    thread.join();
    task.Join();
    const std::lock_guard lock(mutex);
    EXPECT_EQ(requests.front(), requests.back());
}

TEST_F(OperatorTaskTest, addressWithoutAChannel_isAWarning)
{
    Configure(
        "[operator]\naddress = \"https://ntfy.example.org/secret\"\n[messages]\nchannels = [\"spool\"]\n");
    const std::string warning =
        "operator.address: no channel serves addresses of its kind; only the log tells";
    ASSERT_NE(Serve(), 0);
    EXPECT_TRUE(service->AwaitLog("\"level\":\"warning\",\"message\":\"" + warning));
    EXPECT_THAT(Terminate().errors, Not(HasSubstr("secret")));
    const ProcessEnd check = Run({"check"});
    EXPECT_EQ(check.status, 0);
    EXPECT_THAT(check.output, HasSubstr("warning: " + warning));
}
