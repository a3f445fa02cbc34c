// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProxySettings.h"

#include <gtest/gtest.h>

namespace {

TEST(ProxySettings, proxyFor_takesTheEntryOfItsScheme)
{
    struct Row
    {
        const char* proxies;
        QByteArray http;
        QByteArray https;
    };
    const Row rows[]{
        {"", "", ""},
        {"proxy:8080", "proxy:8080", "proxy:8080"},
        {"proxy", "proxy:80", "proxy:80"},
        {"http://proxy:3128/", "http://proxy:3128/", "http://proxy:3128/"},
        {"http://proxy", "http://proxy:80", "http://proxy:80"},
        {"[::1]:3128", "[::1]:3128", "[::1]:3128"},
        {"[::1]", "[::1]:80", "[::1]:80"},
        {"http=one:1;https=two:2", "one:1", "two:2"},
        {"HTTP=one:1 https=two:2", "one:1", "two:2"},
        {"ftp=one:1", "", ""},
        {"https=two:2", "", "two:2"},
        {"https=two:2;socks=three:3", "socks4a://three:3", "two:2"},
        {"socks=three", "socks4a://three:1080", "socks4a://three:1080"},
        {";; \t=", "", ""},
    };
    for (const Row& row : rows) {
        const ProxySettings settings{QString::fromLatin1(row.proxies), {}};
        EXPECT_EQ(settings.ProxyFor("http", "www.example.com"), row.http) << row.proxies;
        EXPECT_EQ(settings.ProxyFor("https", "www.example.com"), row.https) << row.proxies;
    }
}

TEST(ProxySettings, proxyFor_exception_isDirect)
{
    struct Row
    {
        const char* exceptions;
        QByteArray host;
        bool isDirect;
    };
    const Row rows[]{
        {"", "www.example.com", false},
        {"www.example.com", "www.example.com", true},
        {"www.example.com", "WWW.Example.Com", true},
        {"example.com", "www.example.com", false},
        {"*.example.com", "www.example.com", true},
        {"*.example.com", "example.com", false},
        {"*.example.com", "www.exampleXcom", false},
        {"w*.ex*le.*m", "www.example.com", true},
        {"w*.ex*le.*n", "www.example.com", false},
        {"www.example*example.com", "www.example.com", false},
        {"*", "www.example.com", true},
        {"other.org;10.*; *.example.com", "10.1.2.3", true},
        {"other.org;10.*; *.example.com", "110.1.2.3", false},
        {"other.org;10.*; *.example.com", "a.example.com", true},
        {"<local>", "intranet", true},
        {"<local>", "www.example.com", false},
        {"<local>", "[2001:db8::1]", false},
    };
    for (const Row& row : rows) {
        const ProxySettings settings{QStringLiteral("proxy:8080"), QString::fromLatin1(row.exceptions)};
        EXPECT_EQ(settings.ProxyFor("http", row.host).isEmpty(), row.isDirect)
            << row.exceptions << ' ' << row.host.constData();
    }
}

} // namespace
