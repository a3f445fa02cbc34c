// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/XmlText.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

QByteArray Utf16(const QString& text, bool bigEndian, bool mark)
{
    QByteArray bytes;
    const QString whole = mark ? QChar(0xFEFF) + text : text;
    for (const QChar c : whole) {
        const auto low = static_cast<char>(c.unicode() & 0xFF);
        const auto high = static_cast<char>(c.unicode() >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

const QString kCafe = QStringLiteral("<a b=\"caf\u00E9\"/>");

TEST(CheckedXml, bytesOfAnEncoding_becomeUtf8OrNothing)
{
    const struct
    {
        const char* name;
        QByteArray bytes;
        std::optional<QByteArray> utf8;
    } rows[] = {{"plain", "<a/>", "<a/>"},
                {"utf8", kCafe.toUtf8(), kCafe.toUtf8()},
                {"utf8WithMark", "\xEF\xBB\xBF<a/>", "<a/>"},
                {"utf8MarkOverDeclaration",
                 "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xC3\xA9'/>",
                 "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xC3\xA9'/>"},
                {"latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'/>",
                 "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xC3\xA9'/>"},
                {"windows1252", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a b='\x80'/>",
                 "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a b='\xE2\x82\xAC'/>"},
                {"windows1256", "<?xml version='1.0' encoding='windows-1256'?><a b='\xC7'/>",
                 "<?xml version='1.0' encoding='windows-1256'?><a b='\xD8\xA7'/>"},
                {"windows1253_unassigned", "<?xml version='1.0' encoding='windows-1253'?><a b='\xD2'/>",
                 std::nullopt},
                {"utf16LittleWithMark", Utf16(kCafe, false, true), kCafe.toUtf8()},
                {"utf16BigWithMark", Utf16(kCafe, true, true), kCafe.toUtf8()},
                {"utf16LittleWithoutMark", Utf16(kCafe, false, false), kCafe.toUtf8()},
                {"utf16BigWithoutMark", Utf16(kCafe, true, false), kCafe.toUtf8()},
                {"utf16Declared_inEightBits", "<?xml version='1.0' encoding='UTF-16'?><a/>", std::nullopt},
                {"utf16_loneSurrogate", Utf16(QStringLiteral("<a b='\xD83D'/>"), false, true), std::nullopt},
                {"utf16_cutInACharacter", Utf16(kCafe, false, true).chopped(1), std::nullopt},
                {"unknownEncoding", "<?xml version='1.0' encoding='no-such'?><a/>", std::nullopt},
                {"utf8_loneContinuation", "<a b='\x80'/>", std::nullopt},
                {"utf8_cutAtTheEnd", "<a/>\xC3", std::nullopt},
                {"utf8_overlong", "<a b='\xC0\xAF'/>", std::nullopt},
                {"utf8_surrogate", "<a b='\xED\xA0\x80'/>", std::nullopt},
                {"empty", "", std::nullopt},
                {"markOnly", "\xEF\xBB\xBF", std::nullopt}};
    for (const auto& row : rows) {
        EXPECT_EQ(CheckedXml(row.bytes), row.utf8) << row.name;
    }
}

// Letters, digits, combining characters and extenders as Appendix B of XML 1.0, fourth edition, lists them.
TEST(IsXmlName, letterOrUnderscoreAndNameCharacters_areAName)
{
    for (const char16_t* const text : {u"Chicago", u"_a", u"US-60601.a_b", u"S\u00E3oPaulo",
                                       u"\u0645\u0643\u0629", u"\u5317\u4EAC", u"e\u0301", u"a\u00B7b"}) {
        EXPECT_TRUE(IsXmlName(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    }
}

TEST(IsXmlName, anyOtherText_isNone)
{
    // A combining character, the middle dot, the feminine ordinal, the multiplication sign and a ligature.
    for (const char16_t* const text :
         {u"60601", u"-a", u".a", u"\u0301e", u"\u00B7b", u"\u00AA", u"a\u00D7b", u"\u0132", u"a:b", u"",
          u"New York", u"a b='1'", u"a/><b", u"a/", u"!--a--", u"?a?", u"a\u0001"}) {
        EXPECT_FALSE(IsXmlName(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    }
    EXPECT_FALSE(IsXmlName(QString(QChar(u'\0'))));
}

const char* const kPieces[] = {"<a/>", "<a></a>", "<!---->", "<?a?>", "<![CDATA[]]>"};

TEST(CheckedXml, piecesOfAnyKind_upTo6000InOneElement)
{
    for (const QByteArray piece : kPieces) {
        const auto holds = [&](int count) {
            return CheckedXml("<r><b/>" + (piece + "text").repeated(count - 1) + "</r>").has_value();
        };
        EXPECT_TRUE(holds(6000)) << piece.constData();
        EXPECT_FALSE(holds(6001)) << piece.constData();
    }
}

TEST(CheckedXml, piecesOfAnyKind_upTo65536InAll)
{
    for (const QByteArray piece : kPieces) {
        // The root and 13 elements around 5000 each.
        const QByteArray full = ("<b>" + piece.repeated(5000) + "</b>").repeated(13);
        const auto holds = [&](int count) {
            return CheckedXml("<r>" + full + piece.repeated(count) + "</r>").has_value();
        };
        EXPECT_TRUE(holds(65'536 - 1 - 13 * 5001)) << piece.constData();
        EXPECT_FALSE(holds(65'536 - 13 * 5001)) << piece.constData();
    }
}

TEST(CheckedXml, startTag_upTo64KiB_otherMarkupAndTextLonger)
{
    const QByteArray value(64 * 1024 - static_cast<int>(qstrlen("<a b=''>")), '>');
    EXPECT_TRUE(CheckedXml("<a b='" + value + "'></a>"));
    EXPECT_FALSE(CheckedXml("<a b='" + value + "'/>"));
    EXPECT_FALSE(CheckedXml("<r><a b='" + value + "x'></a></r>"));
    const QByteArray text(100'000, '=');
    EXPECT_TRUE(
        CheckedXml("<?p " + text + "?><!--" + text + "--><a><![CDATA[" + text + "]]>" + text + "</a>"));
}

} // namespace
