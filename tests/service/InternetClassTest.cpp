// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/InternetClass.h"

#include "fakes/ErrorOf.h"
#include "fakes/FakePlatform.h"
#include "support/CodePage.h"

#include <gtest/gtest.h>

namespace {

class InternetClassTest : public testing::Test
{
protected:
    [[nodiscard]] QString DecodeHtml(const QString& text,
                                     const QString& introducer = QStringLiteral("&")) const
    {
        return internet.HTMLDecodeEx(text, false, introducer);
    }

    FakePlatform platform;
    QString probe = QStringLiteral("http://probe.example.org/here");
    InternetClass internet{platform.interfaces, probe};
};

QString Character(int byte)
{
    return FromCodePage(QByteArray(1, static_cast<char>(byte)));
}

TEST_F(InternetClassTest, verifyConnectivity_requestsTheProbeOnce)
{
    EXPECT_FALSE(internet.VerifyConnectivity());
    platform.http.reachable = true;
    EXPECT_TRUE(internet.VerifyConnectivity());
    EXPECT_EQ(platform.http.probes, (QStringList{probe, probe}));
    EXPECT_TRUE(platform.http.requests.isEmpty());
}

TEST_F(InternetClassTest, urlEncode_everyByte_isDecodedAgain)
{
    for (int byte = 0; byte < 256; ++byte) {
        const bool isPlain =
            (byte >= 48 && byte <= 57) || (byte >= 65 && byte <= 90) || (byte >= 97 && byte <= 122);
        const QString expected = isPlain      ? Character(byte)
                                 : byte == 32 ? QStringLiteral("+")
                                              : QString::asprintf("%%%02X", static_cast<unsigned int>(byte));
        // A letter first, since a text of spaces only is not changed.
        EXPECT_EQ(internet.URLEncodeEx(u'x' + Character(byte)), u'x' + expected) << byte;
        EXPECT_EQ(internet.URLDecodeEx(u'x' + expected), u'x' + Character(byte)) << byte;
    }
    EXPECT_EQ(internet.URLEncodeEx(QStringLiteral("\u0645")), QStringLiteral("%3F")) << "in no code page";
}

TEST_F(InternetClassTest, urlDecode_table)
{
    const std::pair<QString, QString> rows[] = {
        {QStringLiteral("a%"), QStringLiteral("a")},
        {QStringLiteral("a%4"), QStringLiteral("a4")},
        {QStringLiteral("%41"), QStringLiteral("A")},
        {QStringLiteral("%zz"), QString(QChar(0))},
        {QStringLiteral("%4z"), QString(QChar(4))},
        {QStringLiteral("%z4"), QString(QChar(0))},
        {QStringLiteral("% 4"), QString(QChar(0))},
        {QStringLiteral("%fF%80"), QStringLiteral("\u00FF\u20AC")},
        {QStringLiteral("a+b"), QStringLiteral("a b")},
        {QStringLiteral("%%41"), QString(QChar(0)) + QStringLiteral("1")},
        {QStringLiteral("a%+"), QStringLiteral("a ")},
        {QStringLiteral("a%%"), QStringLiteral("a")},
        {QStringLiteral("%2B%2b"), QStringLiteral("++")},
        {QStringLiteral("%"), QString()},
        {QStringLiteral(" x "), QStringLiteral(" x ")},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(internet.URLDecodeEx(text), expected) << text.toStdString();
    }
}

TEST_F(InternetClassTest, htmlEncode_everyByte)
{
    const std::map<int, QString> named = {{32, QStringLiteral("&nbsp;")},
                                          {34, QStringLiteral("&quot;")},
                                          {38, QStringLiteral("&amp;")},
                                          {60, QStringLiteral("&lt;")},
                                          {62, QStringLiteral("&gt;")}};
    for (int byte = 0; byte < 256; ++byte) {
        const auto found = named.find(byte);
        const QString plain = byte < 32 || byte > 127 ? QStringLiteral("&#%1;").arg(byte) : Character(byte);
        QString expected = found != named.end() ? found->second : plain;
        const QString text = u'x' + Character(byte);
        EXPECT_EQ(internet.HTMLEncodeEx(text, false, QStringLiteral("&")), u'x' + expected) << byte;
        if (byte == 32) {
            expected = QStringLiteral("%20");
        }
        EXPECT_EQ(internet.HTMLEncodeEx(text, true, QStringLiteral("&")), u'x' + expected) << byte;
    }
}

TEST_F(InternetClassTest, htmlEncode_otherIntroducer)
{
    EXPECT_EQ(internet.HTMLEncodeEx(QStringLiteral("a& <\u20AC"), false, QStringLiteral("@@")),
              QStringLiteral("a@@amp;@@nbsp;@@lt;@@#128;"));
}

TEST_F(InternetClassTest, htmlDecode_table)
{
    const std::pair<QString, QString> rows[] = {
        {QStringLiteral("a&b"), QStringLiteral("ab")},
        {QStringLiteral("&foo;bar"), QStringLiteral("foo;bar")},
        {QStringLiteral("lt;x"), QStringLiteral("<x")},
        {QStringLiteral("&nbsp;&quot;&amp;&lt;&gt;"), QStringLiteral(" \"&<>")},
        {QStringLiteral("&LT;"), QStringLiteral("LT;")},
        {QStringLiteral("&#65;x;y"), QStringLiteral("Ax;y")},
        {QStringLiteral("&#128;"), QStringLiteral("\u20AC")},
        {QStringLiteral("&#0;"), QString(QChar(0))},
        {QStringLiteral("#65;"), QStringLiteral("A")},
        {QStringLiteral("a#65;"), QStringLiteral("a#65;")},
        {QStringLiteral("&#x41"), QStringLiteral("#x41")},
        {QStringLiteral("&&amp;"), QStringLiteral("&")},
        {QStringLiteral("a &lt; b"), QStringLiteral("a < b")},
        {QStringLiteral("\u0645"), QStringLiteral("?")},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(DecodeHtml(text), expected) << text.toStdString();
        EXPECT_EQ(internet.HTMLDecodeEx(text, true, QStringLiteral("&")), expected);
    }
}

TEST_F(InternetClassTest, htmlDecode_introducerInAnyCase)
{
    EXPECT_EQ(DecodeHtml(QStringLiteral("1Xlt;2xgt;3XAMP;"), QStringLiteral("x")),
              QStringLiteral("1<2>3AMP;"));
    EXPECT_EQ(DecodeHtml(QStringLiteral("1xamp;2"), QStringLiteral("X")), QStringLiteral("1X2"));
    EXPECT_EQ(DecodeHtml(QStringLiteral("lt;&lt;"), QString()), QStringLiteral("<&lt;"));
}

TEST_F(InternetClassTest, htmlDecode_badNumber_throws)
{
    const auto errorOf = [this](const char* text) {
        return ErrorOf([&] { return DecodeHtml(QLatin1String(text)); });
    };
    EXPECT_EQ(errorOf("&#x41;"), ErrorNumber::kTypeMismatch);
    EXPECT_EQ(errorOf("&#;"), ErrorNumber::kTypeMismatch);
    EXPECT_EQ(errorOf("&#256;"), ErrorNumber::kInvalidCall);
    EXPECT_EQ(errorOf("&#-1;"), ErrorNumber::kInvalidCall);
    EXPECT_EQ(errorOf("&#99999;"), ErrorNumber::kOverflow);
}

TEST_F(InternetClassTest, codecs_spacesOnly_areReturnedUnchanged)
{
    for (const char16_t* const text : {u"", u" ", u"   "}) {
        const QString blanks = QString::fromUtf16(text);
        EXPECT_EQ(internet.URLEncodeEx(blanks), blanks);
        EXPECT_EQ(internet.URLDecodeEx(blanks), blanks);
        EXPECT_EQ(internet.HTMLEncodeEx(blanks, true, QStringLiteral("&")), blanks);
        EXPECT_EQ(DecodeHtml(blanks), blanks);
    }
}

} // namespace
