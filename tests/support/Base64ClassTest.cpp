// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Base64Class.h"

#include "fakes/ErrorOf.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

QByteArray Bytes(int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(i * 7 + 3);
    }
    return bytes;
}

// Source: RFC 4648, section 10.
TEST(Base64Class, encode_vectorsOfTheStandard)
{
    const std::pair<const char*, const char*> rows[] = {{"f", "Zg=="},         {"fo", "Zm8="},
                                                        {"foo", "Zm9v"},       {"foob", "Zm9vYg=="},
                                                        {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"}};
    for (const auto& [plain, encoded] : rows) {
        EXPECT_EQ(Base64Class().EncodeByteArray(plain), QLatin1String(encoded));
        EXPECT_EQ(Base64Class().DecodeToByteArray(QLatin1String(encoded)), plain);
    }
}

TEST(Base64Class, encode_linesOf76_noLineEndAfterTheLast)
{
    for (const int count : {1, 56, 57, 58, 113, 114, 115, 171, 1000}) {
        const QString text = Base64Class().EncodeByteArray(Bytes(count));
        const int characters = 4 * ((count + 2) / 3);
        int total = characters + 2 * (characters / 76);
        total -= total % 78 == 0 ? 2 : 0;
        EXPECT_EQ(text.size(), total) << count;
        EXPECT_FALSE(text.endsWith(u'\n')) << count;
        const QStringList lines = text.split(QStringLiteral("\r\n"));
        for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
            EXPECT_EQ(lines[i].size(), 76) << count;
        }
        EXPECT_EQ(QString(text).remove(QStringLiteral("\r\n")).toLatin1(), Bytes(count).toBase64());
    }
    EXPECT_EQ(Base64Class().EncodeByteArray(Bytes(57)).count(u'\n'), 0);
    EXPECT_EQ(Base64Class().EncodeByteArray(Bytes(58)).count(u'\n'), 1);
}

TEST(Base64Class, decode_withTheLineEndsOfEncoding_givesTheInputBack)
{
    for (int count = 1; count < 300; ++count) {
        EXPECT_EQ(Base64Class().DecodeToByteArray(Base64Class().EncodeByteArray(Bytes(count))), Bytes(count));
    }
}

TEST(Base64Class, decode_paddingIsRemovedWhereverItStands)
{
    for (const char16_t* const text : {u"TWE=", u"TWE", u"=T=W=E=", u"TWE====", u"T\r\nW\r\nE"}) {
        EXPECT_EQ(Base64Class().DecodeToString(QString::fromUtf16(text)), QStringLiteral("Ma"));
    }
}

TEST(Base64Class, decode_lineEndsGoBeforePadding)
{
    // Line ends are removed before padding: a CR and an LF that meet only afterwards count as two zeros.
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TWF\r=\nu")),
              Base64Class().DecodeToByteArray(QStringLiteral("TWFAAu")));
}

TEST(Base64Class, decode_incompleteGroups_giveTheirWholeBytes)
{
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TWFuT")), "Man") << "a rest of 1 gives nothing";
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TWFuTW")), "ManM");
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TWFuTWE")), "ManMa");
}

TEST(Base64Class, decode_otherBytes_countAsZeroAndShift)
{
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("T!Fu")),
              Base64Class().DecodeToByteArray(QStringLiteral("TAFu")));
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TW\nFu")),
              Base64Class().DecodeToByteArray(QStringLiteral("TWAFu")))
        << "a lone line feed is a byte like any other";
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TW Fu")),
              Base64Class().DecodeToByteArray(QStringLiteral("TWAFu")));
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("TW\rFu")),
              Base64Class().DecodeToByteArray(QStringLiteral("TWAFu")));
    EXPECT_EQ(Base64Class().DecodeToByteArray(QStringLiteral("T\u0645Fu")),
              Base64Class().DecodeToByteArray(QStringLiteral("TAFu")));
}

TEST(Base64Class, strings_goThroughTheCodePage)
{
    EXPECT_EQ(Base64Class().EncodeString(QStringLiteral("\u20AC\u00E4")), QStringLiteral("gOQ="));
    EXPECT_EQ(Base64Class().DecodeToString(QStringLiteral("gOQ=")), QStringLiteral("\u20AC\u00E4"));
    EXPECT_EQ(Base64Class().EncodeString(QStringLiteral("\u0645")), QStringLiteral("Pw=="));
}

TEST(Base64Class, emptyResult_throws)
{
    const Base64Class codec;
    EXPECT_EQ(ErrorOf([&] { return codec.EncodeString(QString()); }), ErrorNumber::kSubscript);
    EXPECT_EQ(ErrorOf([&] { return codec.EncodeByteArray({}); }), ErrorNumber::kSubscript);
    for (const char16_t* const text : {u"", u"=", u"\r\n", u"A"}) {
        EXPECT_EQ(ErrorOf([&] { return codec.DecodeToString(QString::fromUtf16(text)); }),
                  ErrorNumber::kSubscript);
    }
}

} // namespace
