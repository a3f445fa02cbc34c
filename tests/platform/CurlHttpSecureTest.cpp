// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/LoopbackServer.h"
#include "platform/CurlHttp.h"
#include "platform/HttpReplies.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// A server that speaks TLS and answers from the files of its folder.
class SecureServer
{
public:
    SecureServer()
    {
        m_openssl.setWorkingDirectory(m_folder.path());
        QProcess certificate;
        certificate.setWorkingDirectory(m_folder.path());
        certificate.start(QStringLiteral(DUSKBEACON_OPENSSL),
                          {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                           QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                           QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                           QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"),
                           QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
                           QStringLiteral("-keyout"), QStringLiteral("key.pem"), QStringLiteral("-out"),
                           QStringLiteral("cert.pem")});
        certificate.waitForFinished();
        m_openssl.start(QStringLiteral(DUSKBEACON_OPENSSL),
                        {QStringLiteral("s_server"), QStringLiteral("-accept"), QStringLiteral("127.0.0.1:0"),
                         QStringLiteral("-key"), QStringLiteral("key.pem"), QStringLiteral("-cert"),
                         QStringLiteral("cert.pem"), QStringLiteral("-HTTP")});
        QByteArray said;
        while (!said.contains("ACCEPT") && m_openssl.waitForReadyRead(10'000)) {
            said += m_openssl.readAllStandardOutput();
        }
        m_port = said.mid(said.lastIndexOf(':') + 1).trimmed().toInt();
    }
    ~SecureServer()
    {
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

private:
    QTemporaryDir m_folder;
    QProcess m_openssl;
    int m_port = 0;
};

constexpr HttpLimits kSecure{1024 * 1024, 5000, 5000};

TEST(CurlHttpSecure, certificateThatNobodyVouchesFor_isRefused)
{
    const SecureServer server;
    ASSERT_GT(server.Port(), 0);
    server.Put(QStringLiteral("x"), "HTTP/1.0 200 OK\r\n\r\n<root/>");
    EXPECT_EQ(Text(CurlHttp().Fetch(server.Url(QStringLiteral("x")), kSecure)), "(nothing)");
    EXPECT_FALSE(CurlHttp().Reach(server.Url(QStringLiteral("x"))));
    EXPECT_EQ(Text(CurlHttp(server.Certificate()).Fetch(server.Url(QStringLiteral("x")), kSecure)), "<root/>")
        << "nothing else was wrong with it";
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

} // namespace
