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

TEST(CurlHttp, reach_bypassesCaches)
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

// Sets the proxy in the environment during its lifetime.
class NamedProxy
{
public:
    NamedProxy(const char* name, const QString& url)
        : m_name(name)
    {
        qputenv(name, url.toUtf8());
    }
    ~NamedProxy() { qunsetenv(m_name); }
    NamedProxy(const NamedProxy&) = delete;
    NamedProxy& operator=(const NamedProxy&) = delete;

private:
    const char* m_name;
};

TEST(CurlHttp, reach_proxyWithoutServer_isNotReached)
{
    const LoopbackServer server(
        [](LoopbackServer::Connection& connection) { connection.Reply("no way there", "502 Bad Gateway"); });
    const NamedProxy proxy("https_proxy", server.Url());
    EXPECT_FALSE(CurlHttp().Reach(QStringLiteral("https://elsewhere.invalid/")));
    ASSERT_EQ(server.RequestLines().size(), 1U);
    EXPECT_EQ(server.RequestLines().front(), "CONNECT elsewhere.invalid:443 HTTP/1.1");
}

TEST(CurlHttp, proxy_isUsedForAllButThisComputer)
{
    const LoopbackServer server(LoopbackServer::Answer("by proxy"));
    const NamedProxy proxy("http_proxy", server.Url());
    const auto isAsked = [&](const char* host) {
        const std::size_t before = server.Requests().size();
        static_cast<void>(
            CurlHttp().Fetch(QStringLiteral("http://%1:1/").arg(QLatin1String(host)), {1024, 2, 2000}));
        return server.Requests().size() > before;
    };
    EXPECT_TRUE(isAsked("elsewhere.invalid"));
    EXPECT_TRUE(isAsked("127.elsewhere.invalid")) << "a name that is no address";
    for (const char* const host : {"127.0.0.1", "127.1.2.3", "localhost", "LocalHost", "[::1]"}) {
        EXPECT_FALSE(isAsked(host)) << host;
    }
}

TEST(CurlHttp, reach_silentServer_blocksThreeSecondsWithoutEvents)
{
    const LoopbackServer server(LoopbackServer::Hang());
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(10);
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(CurlHttp().Reach(server.Url()));
    EXPECT_GE(time.elapsed(), 2900);
    EXPECT_LT(time.elapsed(), 3500);
    EXPECT_EQ(ticks, 0);
}

} // namespace
