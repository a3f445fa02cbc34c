// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"

#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

TEST(CurlHttp, reach_anyAnswer_isReached)
{
    for (const QByteArray status : {"200 OK", "302 Found", "404 Not Found", "503 Busy"}) {
        const LoopbackServer server([status](LoopbackServer::Connection& connection) {
            connection.Send("HTTP/1.1 " + status + "\r\nLocation: http://127.0.0.1:1/\r\n");
            connection.Wait(-1);
        });
        EXPECT_TRUE(CurlHttp().Reach(server.Url(QStringLiteral("/")))) << status.constData();
        EXPECT_EQ(server.Requests().size(), 1U);
    }
}

TEST(CurlHttp, reach_asksPastEveryCache)
{
    const LoopbackServer server(LoopbackServer::Answer("x"));
    ASSERT_TRUE(CurlHttp().Reach(server.Url(QStringLiteral("/"))));
    EXPECT_TRUE(server.Requests().front().contains("\r\nCache-Control: no-cache\r\n"));
    EXPECT_TRUE(server.Requests().front().contains("\r\nUser-Agent: DuskBeacon/1.0.5\r\n"));
}

TEST(CurlHttp, reach_noHttp_isNotReached)
{
    const LoopbackServer rubbish(LoopbackServer::Raw("hello"));
    EXPECT_FALSE(CurlHttp().Reach(rubbish.Url()));
    const LoopbackServer closes(LoopbackServer::Raw(""));
    EXPECT_FALSE(CurlHttp().Reach(closes.Url()));
    EXPECT_FALSE(CurlHttp().Reach(QStringLiteral("http://127.0.0.1:1/")));
    EXPECT_FALSE(CurlHttp().Reach(QStringLiteral("http://no.such.host.invalid/")));
    EXPECT_FALSE(CurlHttp().Reach(QStringLiteral("file:///etc/hostname")));
}

TEST(CurlHttp, reach_silentServer_blocksFiveSecondsWithoutEvents)
{
    const LoopbackServer server(LoopbackServer::Hang());
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(10);
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(CurlHttp().Reach(server.Url()));
    EXPECT_GE(time.elapsed(), 4900);
    EXPECT_LT(time.elapsed(), 6000);
    EXPECT_EQ(ticks, 0);
}

} // namespace
