// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "fakes/NoThreads.h"
#include "platform/CurlHttp.h"
#include "platform/HttpReplies.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <curl/curl.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>

namespace {

std::atomic<bool> pollFails = false;

} // namespace

// Replaces libcurl's function.
extern "C" CURLMcode curl_multi_poll(CURLM* multi, curl_waitfd* sockets, unsigned int count, int milliseconds,
                                     int* ready)
{
    static const auto original =
        reinterpret_cast<decltype(&curl_multi_poll)>(::dlsym(RTLD_NEXT, "curl_multi_poll"));
    return pollFails ? CURLM_OUT_OF_MEMORY : original(multi, sockets, count, milliseconds, ready);
}

namespace {

const Http::Reply kReply = QByteArray("<root/>");

TEST(CurlHttpBackground, fetch_answersOnThisThread)
{
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    CurlHttp http;
    QObject context;
    std::vector<Http::Reply> replies;
    http.FetchInBackground(server.Url(), HttpLimits{}, &context, [&](const Http::Reply& reply) {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        replies.push_back(reply);
    });
    EXPECT_TRUE(replies.empty()) << "never inside the call";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !replies.empty(); }));
    EXPECT_EQ(replies, std::vector{kReply});
}

TEST(CurlHttpBackground, fetch_failure_isToldToo)
{
    const LoopbackServer server(LoopbackServer::Hang());
    CurlHttp http;
    QObject context;
    int failures = 0;
    http.FetchInBackground(server.Url(), kShort, &context,
                           [&](const Http::Reply& reply) { failures += reply ? 0 : 1; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return failures == 1; }));
}

TEST(CurlHttpBackground, fetch_contextDestroyed_cancelsTheTransfer)
{
    const LoopbackServer server(LoopbackServer::Hang());
    CurlHttp http;
    auto context = std::make_unique<QObject>();
    http.FetchInBackground(server.Url(), HttpLimits{}, context.get(),
                           [](const Http::Reply&) { ADD_FAILURE() << "called without its context"; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.Requests().size() == 1; }));
    context.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
    QCoreApplication::processEvents();
}

TEST(CurlHttpBackground, fetch_moreThanFour_areQueued)
{
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    CurlHttp http;
    QObject context;
    int replies = 0;
    for (int i = 0; i < 30; ++i) {
        http.FetchInBackground(server.Url(), HttpLimits{}, &context,
                               [&](const Http::Reply& reply) { replies += reply ? 1 : 0; });
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return replies == 30; }));
}

TEST(CurlHttpBackground, noThread_failsAndDelaysNoEnd)
{
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    QObject context;
    int failures = 0;
    {
        CurlHttp http;
        {
            const NoThreads noThreads;
            EXPECT_FALSE(http.Fetch(server.Url(), kShort));
            for (int i = 0; i < 6; ++i) {
                http.FetchInBackground(server.Url(), kShort, &context,
                                       [&](const Http::Reply& reply) { failures += reply ? 0 : 1; });
            }
            EXPECT_EQ(failures, 0) << "never inside the call";
            EXPECT_TRUE(QTest::qWaitFor([&] { return failures == 6; }));
        }
        EXPECT_EQ(http.Fetch(server.Url(), HttpLimits{}), kReply) << "the next request has a thread again";
    }
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST(CurlHttpBackground, pollFails_transfersFail)
{
    const LoopbackServer silent(LoopbackServer::Hang());
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    CurlHttp http;
    QObject context;
    int failures = 0;
    const auto start = [&] {
        http.FetchInBackground(silent.Url(), HttpLimits{}, &context,
                               [&](const Http::Reply& reply) { failures += reply ? 0 : 1; });
    };
    start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return silent.Requests().size() == 1; }));
    pollFails = true;
    start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return failures == 2; })) << "before the time-out";
    pollFails = false;
    EXPECT_EQ(http.Fetch(server.Url(), HttpLimits{}), kReply) << "the next one is answered again";
}

TEST(CurlHttpBackground, fetch_destruction_endsEverythingAtOnce)
{
    const LoopbackServer server(LoopbackServer::Hang());
    QObject context;
    QElapsedTimer time;
    {
        CurlHttp http;
        for (int i = 0; i < 30; ++i) {
            http.FetchInBackground(server.Url(), HttpLimits{}, &context,
                                   [](const Http::Reply&) { ADD_FAILURE() << "called after the end"; });
        }
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.Requests().size() == 4; }));
        time.start();
    }
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_EQ(server.Requests().size(), 4U) << "four at a time";
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
    QCoreApplication::processEvents();
}

} // namespace
