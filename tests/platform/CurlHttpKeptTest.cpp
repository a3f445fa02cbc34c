// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "platform/HttpReplies.h"

#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using Connection = LoopbackServer::Connection;

// Answers each request, but calls @p deed for the first one that is the second on its connection.
LoopbackServer::Handler Instead(std::function<void(Connection&)> deed)
{
    auto isDone = std::make_shared<std::atomic<bool>>(false);
    return [deed = std::move(deed), isDone](Connection& connection) {
        if (connection.Number() == 2 && !isDone->exchange(true)) {
            deed(connection);
        } else {
            connection.Keep("<root/>");
        }
    };
}

TEST(CurlHttpKept, requestsOneAfterTheOther_takeOneConnection)
{
    const LoopbackServer server([](Connection& connection) { connection.Keep("<root/>"); });
    CurlHttp http;
    QObject context;
    int pictures = 0;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Text(http.Fetch(server.Url(), kShort)), "<root/>");
        http.Notify(server.Url(), kShort);
        http.FetchInBackground(server.Url(), kShort, &context,
                               [&](const Http::Reply& reply) { pictures += reply ? 1 : 0; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return pictures == i + 1; }));
    }
    EXPECT_EQ(server.Requests().size(), 15U);
    EXPECT_EQ(server.Connections(), 1);
}

TEST(CurlHttpKept, closedByTheServer_isReplaced)
{
    CurlHttp http;
    const LoopbackServer closing([](Connection& connection) {
        // HTTP/1.1 keeps the connection by default; the server closes it all the same.
        connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n<root/>");
    });
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Text(http.Fetch(closing.Url(), kShort)), "<root/>");
        EXPECT_TRUE(QTest::qWaitFor([&] { return closing.Open() == 0; }));
    }
    EXPECT_EQ(closing.Requests().size(), 3U) << "nothing is sent on a closed connection";
}

// A part of the first line is not yet a reply.
TEST(CurlHttpKept, diesBeforeTheFirstLineIsWhole_isReplacedOnce)
{
    for (const char* const start : {"", "HTTP/1.1 20"}) {
        const LoopbackServer server(Instead([&](Connection& connection) { connection.Send(start); }));
        CurlHttp http;
        EXPECT_TRUE(http.Fetch(server.Url(), kShort));
        EXPECT_EQ(Text(http.Fetch(server.Url(), kShort)), "<root/>") << start;
        EXPECT_EQ(server.Requests().size(), 3U) << "the second request is sent twice: " << start;
        EXPECT_EQ(server.Connections(), 2) << start;
    }
}

TEST(CurlHttpKept, severalDie_requestIsSentTwiceAndNoMore)
{
    std::atomic<bool> isWell = true;
    const LoopbackServer server([&](Connection& connection) {
        // The first requests arrive together, each on its own connection.
        if (isWell && connection.Wait(200)) {
            connection.Keep("<root/>");
        }
    });
    CurlHttp http;
    QObject context;
    int replies = 0;
    for (int i = 0; i < 3; ++i) {
        http.FetchInBackground(server.Url(), kShort, &context,
                               [&](const Http::Reply& reply) { replies += reply ? 1 : 0; });
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return replies == 3; }));
    ASSERT_EQ(server.Connections(), 3);
    isWell = false;
    EXPECT_FALSE(http.Fetch(server.Url(), kShort));
    EXPECT_EQ(server.Requests().size(), 5U) << "on a kept connection and on a fresh one";
    EXPECT_EQ(server.Connections(), 4);
}

TEST(CurlHttpKept, diesInTheMiddleOfTheReply_requestIsNotSentAgain)
{
    for (const char* const start :
         {"HTTP/1.1 200 OK\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n<ro"}) {
        const LoopbackServer server(Instead([&](Connection& connection) { connection.Send(start); }));
        CurlHttp http;
        EXPECT_TRUE(http.Fetch(server.Url(), kShort));
        EXPECT_NE(Text(http.Fetch(server.Url(), kShort)), "<root/>") << start;
        EXPECT_EQ(server.Requests().size(), 2U) << start;
    }
}

TEST(CurlHttpKept, freshOneThatDies_requestIsNotSentAgain)
{
    const LoopbackServer server(LoopbackServer::Raw(""));
    CurlHttp http;
    EXPECT_FALSE(http.Fetch(server.Url(), kShort));
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST(CurlHttpKept, bytesAfterAReply_areNotTheReplyToTheNextRequest)
{
    struct Row
    {
        const char* name;
        QByteArray inTheSamePacket;
        QByteArray late;
    };
    const QByteArray other = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nother";
    for (const Row& row : {Row{"a late reply", "", other}, Row{"a late newline", "", "\r\n"},
                           Row{"more at once", other, ""}}) {
        std::atomic<bool> isRead = false;
        std::atomic<bool> isSent = false;
        const LoopbackServer server([&](Connection& connection) {
            if (isSent) {
                connection.Keep(connection.Target());
                return;
            }
            connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n/1" + row.inTheSamePacket);
            while (!isRead && connection.Wait(1)) {
            }
            connection.Send(row.late);
            isSent = true;
            connection.Wait(-1);
        });
        CurlHttp http;
        EXPECT_EQ(Text(http.Fetch(server.Url(QStringLiteral("/1")), kShort)), "/1") << row.name;
        isRead = true;
        EXPECT_TRUE(QTest::qWaitFor([&] { return isSent.load(); }));
        for (const char* const target : {"/2", "/3"}) {
            EXPECT_EQ(Text(http.Fetch(server.Url(QLatin1String(target)), kShort)), target) << row.name;
        }
        EXPECT_EQ(server.Connections(), 2) << row.name;
    }
}

// As after a suspend or a change of the network.
TEST(CurlHttpKept, packetsVanish_isReplacedAfterThreeSeconds)
{
    std::atomic<bool> isFirst = true;
    const LoopbackServer server([&](Connection& connection) {
        if (isFirst.exchange(false)) {
            connection.Swallow();
        }
        connection.Keep("<root/>");
    });
    CurlHttp http;
    EXPECT_TRUE(http.Fetch(server.Url(), HttpLimits{}));
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(Text(http.Fetch(server.Url(), HttpLimits{})), "<root/>");
    std::printf("figure: a kept connection whose packets vanish costs %lld ms\n",
                static_cast<long long>(time.elapsed()));
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_EQ(server.Connections(), 2);
}

TEST(CurlHttpKept, reach_hasAConnectionOfItsOwn)
{
    const LoopbackServer server([](Connection& connection) { connection.Keep("<root/>"); });
    CurlHttp http;
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(http.Fetch(server.Url(), kShort));
        EXPECT_TRUE(http.Reach(server.Url()));
    }
    EXPECT_EQ(server.Connections(), 3) << "one for the requests and one for each probe";
}

} // namespace
