// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CurlHttp.h"

#include "fakes/LoopbackServer.h"
#include "platform/HttpReplies.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

using Connection = LoopbackServer::Connection;

qsizetype Threads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

// A zlib stream as HTTP's "deflate" means it.
QByteArray Deflated(const QByteArray& bytes)
{
    return qCompress(bytes, 9).mid(4);
}

// The request line of a fetch of that target.
QByteArray RequestLineOf(const QString& target)
{
    const LoopbackServer server(LoopbackServer::Answer("<root/>"));
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(target), kShort)), "<root/>");
    const std::vector<QByteArray> lines = server.RequestLines();
    return lines.empty() ? QByteArray() : lines.front();
}

TEST(CurlHttp, fetch_targetOfHttp_goesOutByteForByte)
{
    // "#" begins no fragment.
    for (const char* const target :
         {"/cgi-bin/x.pl?a=1&b=2", "/x?c=a&b+c=d", "/x?c=100%", "/x?c=%zz", "/x?c=%41%20%26", "/x?c=[1]{2}",
          "/x?c=\"<a>'|^`\\", "/x?c=;,!()*~@:/?$_.-", "/x?c=a#b&d=e", "/x?c=#a#b", "/x#y", "/a/../b/./c",
          "/x?a=&b=", "/x?"}) {
        EXPECT_EQ(RequestLineOf(QLatin1String(target)), QByteArray("GET ") + target + " HTTP/1.1");
    }
}

TEST(CurlHttp, fetch_anyOtherTarget_isEscapedOrGetsASlash)
{
    // The line end adds no header.
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"/x?c=New York", "/x?c=New%20York"},
        {u"/x?c=York ", "/x?c=York%20"},
        {u"/x?c=S\u00e3o", "/x?c=S%C3%A3o"},
        {u"/x?c=\u0645", "/x?c=%D9%85"},
        {u"/x?c=\U0001F54C", "/x?c=%F0%9F%95%8C"},
        {u"/x?c=\r\nX-Y: 1", "/x?c=%0D%0AX-Y:%201"},
        {u"/x?c=\t\u0001\u007f", "/x?c=%09%01%7F"},
        {u"", "/"},
        {u"?a=b", "/?a=b"},
        {u"#a", "/#a"},
    };
    for (const auto& [target, wire] : rows) {
        EXPECT_EQ(RequestLineOf(QString::fromUtf16(target)), QByteArray("GET ") + wire + " HTTP/1.1");
    }
}

TEST(CurlHttp, fetch_sendsThisAndNothingElse)
{
    const LoopbackServer server([](Connection& connection) {
        connection.Reply("<root/>", "200 OK",
                         "Set-Cookie: a=b\r\nETag: \"1\"\r\nCache-Control: max-age=999\r\n");
    });
    CurlHttp http;
    ASSERT_TRUE(http.Fetch(server.Url(QStringLiteral("/x")), kShort));
    ASSERT_TRUE(http.Fetch(server.Url(QStringLiteral("/x")), kShort));
    const QByteArray expected = "GET /x HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(server.Port()) +
                                "\r\nUser-Agent: DuskBeacon/1.0.5\r\nAccept: */*\r\n"
                                "Accept-Encoding: gzip, deflate\r\n\r\n";
    EXPECT_EQ(server.Requests(), (std::vector{expected, expected})) << "no cookie, no cache";
}

TEST(CurlHttp, fetch_anyStatusWithABody_isAReply)
{
    for (const QByteArray status : {"200 OK", "404 Not Found", "500 Oops", "201 Created", "302 Found"}) {
        const LoopbackServer server(
            [status](Connection& connection) { connection.Reply("<root a='1'/>", status); });
        EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "<root a='1'/>") << status.constData();
    }
}

TEST(CurlHttp, fetch_bodyOfAnyBytesUpToTheLimit_comesThroughWhole)
{
    QByteArray bytes;
    for (int i = 0; i < 70'000; ++i) {
        bytes += static_cast<char>(i % 256);
    }
    for (const QByteArray& body : {QByteArray(), bytes, QByteArray(1024 * 1024, 'x')}) {
        const LoopbackServer server(LoopbackServer::Answer(body));
        EXPECT_EQ(CurlHttp().Fetch(server.Url(), kShort), Http::Reply(body)) << body.size();
    }
}

TEST(CurlHttp, fetch_noLengthThenClose_isAReply)
{
    const LoopbackServer server(LoopbackServer::Raw("HTTP/1.0 200 OK\r\n\r\n<root/>"));
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "<root/>");
}

TEST(CurlHttp, fetch_badServer_failsWithinTheLimits)
{
    const struct
    {
        const char* name;
        LoopbackServer::Handler handler;
    } rows[] = {
        {"hangs", LoopbackServer::Hang()},
        {"hangs_after_the_head", [](Connection& c) { c.Send("HTTP/1.1 200 OK\r\n\r\n") && c.Wait(-1); }},
        {"drips", LoopbackServer::Drip(20)},
        {"floods", LoopbackServer::Flood()},
        {"drips_its_head",
         [](Connection& c) {
             while (c.Wait(20) && c.Send("H")) {
             }
         }},
        {"floods_its_head",
         [](Connection& c) {
             c.Send("HTTP/1.1 200 OK\r\n");
             while (c.Send("X-A: " + QByteArray(1000, 'x') + "\r\n")) {
             }
         }},
        {"endless_head_line",
         [](Connection& c) {
             c.Send("HTTP/1.1 200 OK\r\nX: ");
             while (c.Send(QByteArray(65536, 'x'))) {
             }
         }},
        {"lies_about_its_length", LoopbackServer::Raw("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n<ro")},
        {"announces_too_much", [](Connection& c) { c.Reply(QByteArray(1024 * 1024 + 1, 'x')); }},
        {"cut_chunk", LoopbackServer::Raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n9\r\n<ro")},
        {"bad_chunk", LoopbackServer::Raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n<ro")},
        {"closes_at_once", LoopbackServer::Raw("")},
        {"talks_rubbish", LoopbackServer::Raw("<root/>")},
        {"bomb",
         [](Connection& c) {
             c.Reply(Deflated(QByteArray(64 * 1024 * 1024, 'x')), "200 OK", "Content-Encoding: deflate\r\n");
         }},
        {"not_what_it_says_it_is",
         [](Connection& c) { c.Reply("<root/>", "200 OK", "Content-Encoding: gzip\r\n"); }},
        {"redirect_loop", LoopbackServer::RedirectTo("/again")},
        {"redirect_to_a_file", LoopbackServer::RedirectTo("file:///etc/hostname")},
        {"redirect_to_ftp", LoopbackServer::RedirectTo("ftp://127.0.0.1/x")},
        {"redirect_to_nowhere", LoopbackServer::RedirectTo("http://")}};
    for (const auto& [name, handler] : rows) {
        SCOPED_TRACE(name);
        const qsizetype before = Threads();
        {
            const LoopbackServer server(handler);
            QElapsedTimer time;
            time.start();
            EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "(nothing)");
            EXPECT_LT(time.elapsed(), 2 * kShort.totalMilliseconds);
            EXPECT_GE(server.Requests().size(), 1U);
        }
        EXPECT_EQ(Threads(), before) << "a thread was left behind";
    }
}

TEST(CurlHttp, fetch_invalidAddress_fails)
{
    for (const char16_t* const url :
         {u"", u"http://", u"http:///x", u"file:///etc/hostname", u"ftp://127.0.0.1/", u"data:,x",
          u"http://127.0.0.1:99999/", u"http://no.such.host.invalid/", u"settings.xml", u"http://#", u"#",
          u"http://127.0.0.1:1/"}) {
        EXPECT_FALSE(CurlHttp().Fetch(QString::fromUtf16(url), kShort))
            << QString::fromUtf16(url).toStdString();
    }
}

TEST(CurlHttp, fetch_compressedBody_comesUncompressed)
{
    const LoopbackServer server([](Connection& connection) {
        connection.Reply(Deflated("<root/>"), "200 OK", "Content-Encoding: deflate\r\n");
    });
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "<root/>");
}

TEST(CurlHttp, fetch_silentServer_failsLongBeforeTheWholeTime)
{
    for (const char* const start : {"", "HTTP/1.1 200 OK\r\n\r\n"}) {
        const LoopbackServer server(
            [start](Connection& connection) { connection.Send(start) && connection.Wait(-1); });
        QElapsedTimer time;
        time.start();
        EXPECT_FALSE(CurlHttp().Fetch(server.Url(), {1024, 1, 30'000})) << start;
        EXPECT_GE(time.elapsed(), 1000) << start;
        EXPECT_LT(time.elapsed(), 5000) << start;
    }
}

TEST(CurlHttp, fetch_slowButSteady_isAReply)
{
    const LoopbackServer server([](Connection& connection) {
        connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n");
        while (connection.Wait(40) && connection.Send("x")) {
        }
    });
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), {1024, 1, 5000})), "xxxxx");
}

// Redirects as often as the number in the target says.
LoopbackServer::Handler CountDown()
{
    return [](Connection& connection) {
        const int left = connection.Target().mid(1).toInt();
        if (left == 0) {
            connection.Reply("there");
        } else {
            LoopbackServer::RedirectTo('/' + QByteArray::number(left - 1))(connection);
        }
    };
}

TEST(CurlHttp, fetch_tenRedirects_areFollowedAndElevenAreNot)
{
    const LoopbackServer server(CountDown());
    CurlHttp http;
    EXPECT_EQ(Text(http.Fetch(server.Url(QStringLiteral("/10")), kShort)), "there");
    EXPECT_EQ(Text(http.Fetch(server.Url(QStringLiteral("/11")), kShort)), "(nothing)");
    EXPECT_EQ(server.Requests().size(), 22U);
}

TEST(CurlHttp, fetch_redirectOfEveryKind_isFollowed)
{
    for (const QByteArray status :
         {"301 Moved Permanently", "302 Found", "303 See Other", "307 Temporary", "308 Permanent"}) {
        const LoopbackServer server([status](Connection& connection) {
            connection.Target() == "/" ? connection.Reply("moved", status, "Location: /there\r\n")
                                       : connection.Reply("there");
        });
        EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "there") << status.constData();
    }
    const LoopbackServer server([](Connection& connection) {
        connection.Reply("here", "300 Multiple Choices", "Location: /there\r\n");
    });
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "here");
}

TEST(CurlHttp, fetch_redirect_keepsTheBytesOfItsTarget)
{
    const LoopbackServer server([](Connection& connection) {
        if (connection.Target() == "/a/b?c=#d") {
            LoopbackServer::RedirectTo("../e f?g=%41[\xC3\xA3#h")(connection);
        } else {
            connection.Reply("there");
        }
    });
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(QStringLiteral("/a/b?c=#d")), kShort)), "there");
    ASSERT_EQ(server.RequestLines().size(), 2U);
    EXPECT_EQ(server.RequestLines().back(), "GET /e%20f?g=%41[%C3%A3 HTTP/1.1");
}

TEST(CurlHttp, fetch_redirect_isNotHeldUpByItsBody)
{
    const LoopbackServer server([](Connection& connection) {
        if (connection.Target() == "/") {
            connection.Send("HTTP/1.1 302 Found\r\nLocation: /there\r\nContent-Length: 9\r\n\r\n");
            connection.Wait(-1);
        } else {
            connection.Reply("there");
        }
    });
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(), kShort)), "there");
}

TEST(CurlHttp, fetch_servesEventsWhileItWaits)
{
    const LoopbackServer server([](Connection& connection) {
        if (connection.Wait(250)) {
            connection.Reply("<root/>");
        }
    });
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(10);
    EXPECT_TRUE(CurlHttp().Fetch(server.Url(), {1024, 5, 5000}));
    EXPECT_GT(ticks, 5);
}

TEST(CurlHttp, fetch_loopToldToEnd_failsAtOnceAndLeavesNoThread)
{
    const qsizetype before = Threads();
    LoopbackServer server(LoopbackServer::Hang());
    const qsizetype withServer = Threads();
    QElapsedTimer time;
    time.start();
    Http::Reply reply(QByteArray("x"));
    QTimer::singleShot(0, QCoreApplication::instance(), [&] {
        CurlHttp http;
        QTimer::singleShot(50, QCoreApplication::instance(), [] { QCoreApplication::exit(0); });
        reply = http.Fetch(server.Url(), HttpLimits{});
    });
    QCoreApplication::exec();
    EXPECT_FALSE(reply);
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; })) << "the transfer still runs";
    EXPECT_LE(Threads(), withServer + 1) << "one more thread: the server's, for the connection";
    EXPECT_LT(before, withServer);
}

// Twenty nested fetches: each starts while the previous one waits.
class Nest
{
public:
    Nest(CurlHttp& http, QString url)
        : m_http(http)
        , m_url(std::move(url))
    {
    }
    void Go(int depth)
    {
        if (depth == 20) {
            deepest();
            return;
        }
        QTimer::singleShot(1, QCoreApplication::instance(), [this, depth] { Go(depth + 1); });
        replies.push_back(m_http.Fetch(m_url, HttpLimits{}));
    }

    std::vector<Http::Reply> replies;
    std::function<void()> deepest = [] {};

private:
    CurlHttp& m_http;
    QString m_url;
};

TEST(CurlHttp, fetch_twentyDeep_unwindsWithEveryReply)
{
    std::atomic<bool> isDeep = false;
    LoopbackServer server([&](Connection& connection) {
        while (!isDeep && connection.Wait(5)) {
        }
        connection.Reply("<root/>");
    });
    CurlHttp http;
    Nest nest(http, server.Url());
    nest.deepest = [&] { isDeep = true; };
    nest.Go(0);
    ASSERT_EQ(nest.replies.size(), 20U);
    for (const Http::Reply& reply : nest.replies) {
        EXPECT_EQ(Text(reply), "<root/>");
    }
}

TEST(CurlHttp, fetch_twentyDeep_programEnds_unwindsWithFailures)
{
    LoopbackServer server(LoopbackServer::Hang());
    CurlHttp http;
    Nest nest(http, server.Url());
    nest.deepest = [] { QCoreApplication::exit(0); };
    QTimer::singleShot(0, QCoreApplication::instance(), [&] { nest.Go(0); });
    QCoreApplication::exec();
    ASSERT_EQ(nest.replies.size(), 20U);
    for (const Http::Reply& reply : nest.replies) {
        EXPECT_FALSE(reply);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Open() == 0; }));
}

} // namespace
