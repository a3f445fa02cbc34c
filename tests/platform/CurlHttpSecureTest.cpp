// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "platform/HttpReplies.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// A server that speaks TLS and answers from the files of its folder.
class SecureServer
{
public:
    explicit SecureServer(const QString& how = QStringLiteral("-HTTP"))
    {
        m_openssl.setWorkingDirectory(m_folder.path());
        QProcess certificate;
        certificate.setWorkingDirectory(m_folder.path());
        certificate.start(QStringLiteral(DUSKBEACON_OPENSSL),
                          QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                                         "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 "
                                         "-keyout key.pem -out cert.pem")
                              .split(u' '));
        certificate.waitForFinished();
        m_openssl.start(QStringLiteral(DUSKBEACON_OPENSSL),
                        QStringLiteral("s_server -accept 127.0.0.1:0 -key key.pem -cert cert.pem %1")
                            .arg(how)
                            .split(u' '));
        QByteArray said;
        while (!said.contains("ACCEPT") && m_openssl.waitForReadyRead(10'000)) {
            said += m_openssl.readAllStandardOutput();
        }
        m_port = said.mid(said.lastIndexOf(':') + 1).trimmed().toInt();
    }
    ~SecureServer()
    {
        // The slot of a derived class would use destroyed members.
        m_openssl.blockSignals(true);
        m_openssl.kill();
        m_openssl.waitForFinished();
    }
    SecureServer(const SecureServer&) = delete;
    SecureServer& operator=(const SecureServer&) = delete;

    void Put(const QString& name, const QByteArray& wholeReply) const
    {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(wholeReply);
    }
    [[nodiscard]] QString Url(const QString& name) const
    {
        return QStringLiteral("https://127.0.0.1:%1/%2").arg(QString::number(m_port), name);
    }
    [[nodiscard]] QByteArray Certificate() const
    {
        return m_folder.filePath(QStringLiteral("cert.pem")).toUtf8();
    }
    [[nodiscard]] int Port() const { return m_port; }

protected:
    QTemporaryDir m_folder;
    QProcess m_openssl;
    int m_port = 0;
};

// Answers each request and keeps the connection.
class KeepingServer final : public SecureServer
{
public:
    KeepingServer()
        : SecureServer(QStringLiteral("-no_ticket"))
    {
        QObject::connect(&m_openssl, &QProcess::readyRead, &m_openssl, [this] {
            m_said += m_openssl.readAll();
            for (; Requests() < m_said.count("\r\n\r\n"); ++m_requests) {
                m_openssl.write("HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n<root/>");
            }
        });
    }
    [[nodiscard]] qsizetype Requests() const { return m_requests; }
    [[nodiscard]] qsizetype Handshakes() const { return m_said.count("CIPHER is"); }

private:
    QByteArray m_said;
    qsizetype m_requests = 0;
};

constexpr HttpLimits kSecure{1024 * 1024, 5, 5000};

TEST(CurlHttpSecure, certificateOfUnknownAuthority_isRefused)
{
    const SecureServer server;
    ASSERT_GT(server.Port(), 0);
    server.Put(QStringLiteral("x"), "HTTP/1.0 200 OK\r\n\r\n<root/>");
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(QStringLiteral("x")), kSecure)), "(nothing)");
    EXPECT_FALSE(CurlHttp().Reach(server.Url(QStringLiteral("x"))));
    EXPECT_EQ(Text(CurlHttp(server.Certificate()).Fetch(server.Url(QStringLiteral("x")), kSecure)), "<root/>")
        << "only the authority was wrong";
}

TEST(CurlHttpSecure, certificateOfAnotherName_isRefused)
{
    const SecureServer server;
    server.Put(QStringLiteral("x"), "HTTP/1.0 200 OK\r\n\r\n<root/>");
    const QString other =
        server.Url(QStringLiteral("x")).replace(QStringLiteral("127.0.0.1"), QStringLiteral("localhost"));
    EXPECT_EQ(Text(CurlHttp(server.Certificate()).Fetch(other, kSecure)), "(nothing)");
}

TEST(CurlHttpSecure, redirectToPlainHttp_isNotFollowed)
{
    const LoopbackServer plain(LoopbackServer::Answer("<plain/>"));
    const SecureServer secure;
    secure.Put(QStringLiteral("down"),
               "HTTP/1.0 302 Found\r\nLocation: " + plain.Url().toLatin1() + "/\r\n\r\n");
    secure.Put(QStringLiteral("stay"), "HTTP/1.0 302 Found\r\nLocation: there\r\n\r\n");
    secure.Put(QStringLiteral("there"), "HTTP/1.0 200 OK\r\n\r\n<there/>");
    CurlHttp http(secure.Certificate());
    EXPECT_EQ(Text(http.Fetch(secure.Url(QStringLiteral("down")), kSecure)), "(nothing)");
    EXPECT_TRUE(plain.Requests().empty());
    EXPECT_EQ(Text(http.Fetch(secure.Url(QStringLiteral("stay")), kSecure)), "<there/>");
}

TEST(CurlHttpSecure, redirectFromPlainHttp_isFollowed)
{
    const SecureServer secure;
    secure.Put(QStringLiteral("there"), "HTTP/1.0 200 OK\r\n\r\n<there/>");
    const LoopbackServer plain(LoopbackServer::RedirectTo(secure.Url(QStringLiteral("there")).toLatin1()));
    EXPECT_EQ(Text(CurlHttp(secure.Certificate()).Fetch(plain.Url(), kSecure)), "<there/>");
}

TEST(CurlHttpSecure, requestsOneAfterTheOther_takeOneHandshake)
{
    const KeepingServer server;
    CurlHttp http(server.Certificate());
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(Text(http.Fetch(server.Url(QStringLiteral("x")), kSecure)), "<root/>");
    }
    std::printf("figure: %lld requests over TLS, %lld handshakes\n",
                static_cast<long long>(server.Requests()), static_cast<long long>(server.Handshakes()));
    EXPECT_EQ(server.Handshakes(), 1);
}

TEST(CurlHttpSecure, connectionWithoutAHandshake_isGivenUpInItsTime)
{
    const LoopbackServer silent(LoopbackServer::Hang());
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(CurlHttp().Fetch(silent.Url().replace(QStringLiteral("http:"), QStringLiteral("https:")),
                                  {1024, 10, 20'000, 500}));
    EXPECT_LT(time.elapsed(), 2000);
}

} // namespace
