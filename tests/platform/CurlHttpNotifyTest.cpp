// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "platform/HttpReplies.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

using Connection = LoopbackServer::Connection;

TEST(CurlHttpNotify, replyOrFailure_endsTheWait)
{
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    QElapsedTimer time;
    time.start();
    CurlHttp().Notify(server.Url(QStringLiteral("/x?c=New York#1")), kNotifyLimits);
    CurlHttp().Notify(QStringLiteral("http://127.0.0.1:1/"), kNotifyLimits);
    EXPECT_LT(time.elapsed(), 2000);
    EXPECT_EQ(server.RequestLines(), std::vector<QByteArray>{"GET /x?c=New%20York#1 HTTP/1.1"});
}

TEST(CurlHttpNotify, silentService_isWaitedForThreeSeconds_andTheRequestGoesOn)
{
    std::atomic<bool> isSilent = true;
    std::atomic<int> answered = 0;
    const LoopbackServer server([&](Connection& connection) {
        while (isSilent && connection.Wait(5)) {
        }
        answered += connection.Wait(0) && connection.Reply("<root/>") ? 1 : 0;
    });
    CurlHttp http;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(10);
    QElapsedTimer time;
    time.start();
    // A second request during the wait for the first.
    QTimer::singleShot(100, &timer, [&] { http.Notify(server.Url(), kNotifyLimits); });
    http.Notify(server.Url(), kNotifyLimits);
    EXPECT_GE(time.elapsed(), 2900);
    EXPECT_LT(time.elapsed(), 3600);
    EXPECT_GT(ticks, 50) << "events were served";
    EXPECT_EQ(server.Requests().size(), 2U);
    isSilent = false;
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
    EXPECT_EQ(answered, 2) << "both requests continued";
}

TEST(CurlHttpNotify, request_hasItsLimits)
{
    const LoopbackServer server(LoopbackServer::Hang());
    CurlHttp http;
    http.Notify(server.Url(), kShort);
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
}

TEST(CurlHttpNotify, programEnds_returnsAtOnce_andDropsTheRequest)
{
    const LoopbackServer server(LoopbackServer::Hang());
    QElapsedTimer time;
    time.start();
    QTimer::singleShot(0, QCoreApplication::instance(), [&] {
        CurlHttp http;
        QTimer::singleShot(100, QCoreApplication::instance(), [] { QCoreApplication::exit(0); });
        http.Notify(server.Url(), kNotifyLimits);
    });
    QCoreApplication::exec();
    EXPECT_LT(time.elapsed(), 2000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
}

TEST(CurlHttpNotify, picturesOnTheirWay_holdNothingBack)
{
    const LoopbackServer pictures(LoopbackServer::Hang());
    const LoopbackServer service(LoopbackServer::Answer("<root/>"));
    CurlHttp http;
    QObject context;
    for (int i = 0; i < 16; ++i) {
        http.FetchInBackground(pictures.Url(), HttpLimits{}, &context, [](const Http::Reply&) {});
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return pictures.Open() == 4; }));
    QElapsedTimer time;
    time.start();
    http.Notify(service.Url(), kNotifyLimits);
    EXPECT_TRUE(http.Fetch(service.Url(), kShort));
    EXPECT_LT(time.elapsed(), 2000);
    EXPECT_EQ(pictures.Requests().size(), 4U);
}

} // namespace
