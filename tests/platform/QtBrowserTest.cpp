// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtBrowser.h"

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <gtest/gtest.h>

/// Takes the addresses that would go to the desktop.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop()
    {
        for (const QString& scheme : Schemes()) {
            QDesktopServices::setUrlHandler(scheme, this, "Take");
        }
    }
    ~Desktop() override
    {
        for (const QString& scheme : Schemes()) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    Q_INVOKABLE void Take(const QUrl& url) { opened << QString::fromLatin1(url.toEncoded()); }

    QStringList opened;

private:
    static QStringList Schemes()
    {
        return {QStringLiteral("http"), QStringLiteral("https"),      QStringLiteral("file"),
                QStringLiteral("ftp"),  QStringLiteral("javascript"), QStringLiteral("smb"),
                QStringLiteral("data"), QStringLiteral("mailto")};
    }
};

namespace {

struct Address
{
    const char* name;
    const char* url;
    /// Empty: not opened.
    const char* opened;
};

class QtBrowserTest : public testing::TestWithParam<Address>
{
};

TEST_P(QtBrowserTest, opensWebAddressesOnly)
{
    const Desktop desktop;
    QtBrowser browser;
    browser.Open(QString::fromUtf8(GetParam().url));
    const QString expected = QLatin1String(GetParam().opened);
    EXPECT_EQ(desktop.opened, expected.isEmpty() ? QStringList() : QStringList{expected});
}

INSTANTIATE_TEST_SUITE_P(
    Each, QtBrowserTest,
    testing::Values(
        Address{"http", "http://localhost:8750/dbeacon/help.html", "http://localhost:8750/dbeacon/help.html"},
        Address{"https", "https://localhost/a?b=c", "https://localhost/a?b=c"},
        Address{"upperCase", "HTTP://localhost/", "http://localhost/"},
        Address{"blank", "http://localhost/?prod_string=a b", "http://localhost/?prod_string=a%20b"},
        Address{"file", "file:///etc/passwd", ""}, Address{"path", "/etc/passwd", ""},
        Address{"ftp", "ftp://localhost/", ""}, Address{"smb", "smb://localhost/share", ""},
        Address{"script", "javascript:alert(1)", ""}, Address{"data", "data:text/html,x", ""},
        Address{"mail", "mailto:a@localhost", ""}, Address{"noHost", "http:///nowhere", ""},
        Address{"option", "--version", ""}, Address{"empty", "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace

#include "QtBrowserTest.moc"
