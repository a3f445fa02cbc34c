// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/XmlText.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

struct EncodingRow
{
    const char* name;
    QByteArray bytes;
    std::optional<QByteArray> utf8;
};

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

class EncodingRows : public testing::TestWithParam<EncodingRow>
{
};

TEST_P(EncodingRows, bytes_becomeUtf8OrNothing)
{
    EXPECT_EQ(CheckedXml(GetParam().bytes), GetParam().utf8);
}

const QString kCafe = QStringLiteral("<a b=\"caf\u00E9\"/>");

INSTANTIATE_TEST_SUITE_P(
    CheckedXml, EncodingRows,
    testing::Values(
        EncodingRow{"plain", "<a/>", "<a/>"}, EncodingRow{"utf8", kCafe.toUtf8(), kCafe.toUtf8()},
        EncodingRow{"utf8WithMark", "\xEF\xBB\xBF<a/>", "<a/>"},
        EncodingRow{"utf8MarkOverDeclaration",
                    "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xC3\xA9'/>",
                    "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xC3\xA9'/>"},
        EncodingRow{"latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'/>",
                    "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xC3\xA9'/>"},
        EncodingRow{"windows1252", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a b='\x80'/>",
                    "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a b='\xE2\x82\xAC'/>"},
        EncodingRow{"windows1256", "<?xml version='1.0' encoding='windows-1256'?><a b='\xC7'/>",
                    "<?xml version='1.0' encoding='windows-1256'?><a b='\xD8\xA7'/>"},
        EncodingRow{"windows1253_unassigned", "<?xml version='1.0' encoding='windows-1253'?><a b='\xD2'/>",
                    std::nullopt},
        EncodingRow{"utf16LittleWithMark", Utf16(kCafe, false, true), kCafe.toUtf8()},
        EncodingRow{"utf16BigWithMark", Utf16(kCafe, true, true), kCafe.toUtf8()},
        EncodingRow{"utf16LittleWithoutMark", Utf16(kCafe, false, false), kCafe.toUtf8()},
        EncodingRow{"utf16BigWithoutMark", Utf16(kCafe, true, false), kCafe.toUtf8()},
        EncodingRow{"utf16Declared_inEightBits", "<?xml version='1.0' encoding='UTF-16'?><a/>", std::nullopt},
        EncodingRow{"utf16_loneSurrogate", Utf16(QStringLiteral("<a b='\xD83D'/>"), false, true),
                    std::nullopt},
        EncodingRow{"utf16_cutInACharacter", Utf16(kCafe, false, true).chopped(1), std::nullopt},
        EncodingRow{"unknownEncoding", "<?xml version='1.0' encoding='no-such'?><a/>", std::nullopt},
        EncodingRow{"utf8_loneContinuation", "<a b='\x80'/>", std::nullopt},
        EncodingRow{"utf8_cutAtTheEnd", "<a/>\xC3", std::nullopt},
        EncodingRow{"utf8_overlong", "<a b='\xC0\xAF'/>", std::nullopt},
        EncodingRow{"utf8_surrogate", "<a b='\xED\xA0\x80'/>", std::nullopt},
        EncodingRow{"empty", "", std::nullopt}, EncodingRow{"markOnly", "\xEF\xBB\xBF", std::nullopt}),
    [](const testing::TestParamInfo<EncodingRow>& row) { return std::string(row.param.name); });

struct NameRow
{
    const char* name;
    QString text;
    bool isName;
};

class NameRows : public testing::TestWithParam<NameRow>
{
};

TEST_P(NameRows, text_isAnXmlNameOrNot)
{
    EXPECT_EQ(IsXmlName(GetParam().text), GetParam().isName);
}

// Letters, digits, combining characters and extenders as Appendix B of XML 1.0, fourth edition, lists them.
INSTANTIATE_TEST_SUITE_P(IsXmlName, NameRows,
                         testing::Values(NameRow{"letters", QStringLiteral("Chicago"), true},
                                         NameRow{"underscore", QStringLiteral("_a"), true},
                                         NameRow{"digitInside", QStringLiteral("US-60601.a_b"), true},
                                         NameRow{"digitFirst", QStringLiteral("60601"), false},
                                         NameRow{"hyphenFirst", QStringLiteral("-a"), false},
                                         NameRow{"pointFirst", QStringLiteral(".a"), false},
                                         NameRow{"accented", QStringLiteral("S\u00E3oPaulo"), true},
                                         NameRow{"arabic", QStringLiteral("\u0645\u0643\u0629"), true},
                                         NameRow{"han", QStringLiteral("\u5317\u4EAC"), true},
                                         NameRow{"combiningInside", QStringLiteral("e\u0301"), true},
                                         NameRow{"combiningFirst", QStringLiteral("\u0301e"), false},
                                         NameRow{"middleDotInside", QStringLiteral("a\u00B7b"), true},
                                         NameRow{"middleDotFirst", QStringLiteral("\u00B7b"), false},
                                         NameRow{"feminineOrdinal", QStringLiteral("\u00AA"), false},
                                         NameRow{"multiplicationSign", QStringLiteral("a\u00D7b"), false},
                                         NameRow{"ligature", QStringLiteral("\u0132"), false},
                                         NameRow{"prefix", QStringLiteral("a:b"), false},
                                         NameRow{"empty", QString(), false},
                                         NameRow{"blank", QStringLiteral("New York"), false},
                                         NameRow{"attributeBehind", QStringLiteral("a b='1'"), false},
                                         NameRow{"closed", QStringLiteral("a/><b"), false},
                                         NameRow{"slash", QStringLiteral("a/"), false},
                                         NameRow{"comment", QStringLiteral("!--a--"), false},
                                         NameRow{"instruction", QStringLiteral("?a?"), false},
                                         NameRow{"control", QStringLiteral("a\u0001"), false},
                                         NameRow{"null", QString(QChar(u'\0')), false}),
                         [](const testing::TestParamInfo<NameRow>& row) {
                             return std::string(row.param.name);
                         });

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
