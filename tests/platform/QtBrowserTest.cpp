// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <gtest/gtest.h>

/// Records the addresses that the desktop would open.
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

TEST(QtBrowserTest, opensWebAddressesOnly)
{
    struct Row
    {
        const char* url;
        const char* opened; // empty: not opened
    };
    for (const Row& row :
         {Row{"http://localhost:8750/dbeacon/help.html", "http://localhost:8750/dbeacon/help.html"},
          Row{"https://localhost/a?b=c", "https://localhost/a?b=c"},
          Row{"HTTP://localhost/", "http://localhost/"},
          Row{"http://localhost/?prod_string=a b", "http://localhost/?prod_string=a%20b"},
          Row{"file:///etc/passwd", ""}, Row{"/etc/passwd", ""}, Row{"ftp://localhost/", ""},
          Row{"smb://localhost/share", ""}, Row{"javascript:alert(1)", ""}, Row{"data:text/html,x", ""},
          Row{"mailto:a@localhost", ""}, Row{"http:///nowhere", ""}, Row{"--version", ""}, Row{"", ""}}) {
        Desktop desktop;
        QtBrowser().Open(QString::fromUtf8(row.url));
        EXPECT_EQ(desktop.opened.join(u'|'), QLatin1String(row.opened)) << row.url;
    }
}

} // namespace

#include "QtBrowserTest.moc"
