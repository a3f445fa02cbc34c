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
    const std::optional<QByteArray> decoded = DecodeXml(GetParam().bytes);
    ASSERT_EQ(decoded.has_value(), GetParam().utf8.has_value());
    if (decoded) {
        EXPECT_EQ(*decoded, *GetParam().utf8);
    }
}

const QString kCafe = QStringLiteral("<a b=\"caf\u00E9\"/>");

INSTANTIATE_TEST_SUITE_P(
    DecodeXml, EncodingRows,
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
        EncodingRow{"utf16LittleWithMark", Utf16(kCafe, false, true), kCafe.toUtf8()},
        EncodingRow{"utf16BigWithMark", Utf16(kCafe, true, true), kCafe.toUtf8()},
        EncodingRow{"utf16LittleWithoutMark", Utf16(kCafe, false, false), kCafe.toUtf8()},
        EncodingRow{"utf16BigWithoutMark", Utf16(kCafe, true, false), kCafe.toUtf8()},
        EncodingRow{"utf16Declared_inEightBits", "<?xml version='1.0' encoding='UTF-16'?><a/>", std::nullopt},
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

TEST(HasModestMarkup, piecesOfAnyKind_upTo65536)
{
    for (const QByteArray piece : {"<a/>", "<a></a>", "<!---->", "<?a?>", "<![CDATA[]]>"}) {
        const auto children = [&](int count) { return "<r>" + piece.repeated(count) + "</r>"; };
        EXPECT_TRUE(HasModestMarkup(children(65'535))) << piece.constData();
        EXPECT_FALSE(HasModestMarkup(children(65'536))) << piece.constData();
    }
}

TEST(HasModestMarkup, attributes_upTo256_in1024Elements)
{
    const auto attributes = [](int count) {
        QByteArray tag = "<a";
        for (int i = 0; i < count; ++i) {
            tag += " n" + QByteArray::number(i) + (i % 2 == 0 ? "='>\"'" : "=\"x='\"");
        }
        return tag + "/>";
    };
    EXPECT_TRUE(HasModestMarkup(attributes(256)));
    EXPECT_FALSE(HasModestMarkup(attributes(257)));
    const QByteArray full = "<r>" + attributes(256).repeated(1024);
    EXPECT_TRUE(HasModestMarkup(full + "</r>"));
    EXPECT_FALSE(HasModestMarkup(full + attributes(1) + "</r>"));
    EXPECT_TRUE(HasModestMarkup("<r>" + attributes(32).repeated(65'535) + "</r>"));
}

TEST(HasModestMarkup, namespaces_upTo256_inAllTagsTogether)
{
    const auto nested = [](int count) {
        return QByteArray("<a xmlns:b='xmlns' xmlns='c'>").repeated(count / 2) + "xmlns" +
               QByteArray("</a>").repeated(count / 2);
    };
    EXPECT_TRUE(HasModestMarkup(nested(256)));
    EXPECT_FALSE(HasModestMarkup(nested(258)));
    const QByteArray words = QByteArray(" xmlns").repeated(1000);
    EXPECT_TRUE(HasModestMarkup("<a b='" + words + "'>" + words + "<!--" + words + "--></a>"));
}

TEST(HasModestMarkup, namespaces_countForEachAttribute)
{
    QByteArray elements;
    for (int number = 0; number < 64; ++number) {
        elements += " p:a" + QByteArray::number(number) + "=''";
    }
    elements = ("<a" + elements + "/>").repeated(4000);
    EXPECT_TRUE(HasModestMarkup("<r xmlns:p='p'>" + elements + "</r>"));
    EXPECT_FALSE(HasModestMarkup("<r" + QByteArray(" xmlns:p='p'").repeated(256) + ">" + elements + "</r>"));
}

TEST(HasModestMarkup, declarations_areNone)
{
    EXPECT_TRUE(HasModestMarkup("<!DOCTYPE a><a b='[\"'/>"));
    for (const char* const type :
         {"<!DOCTYPE a []>", "<!DOCTYPE a SYSTEM \">\" []>", "<!DOCTYPE a SYSTEM '>' []>"}) {
        EXPECT_FALSE(HasModestMarkup(QByteArray(type) + "<a/>")) << type;
    }
}

TEST(HasModestMarkup, whatIsNoTag_doesNotCount)
{
    const QByteArray equals(1000, '=');
    EXPECT_TRUE(HasModestMarkup("<?p " + equals + "?><!--<a " + equals + ">--><a><![CDATA[<b " + equals +
                                "]]>" + equals + "</a>"));
}

TEST(HasModestMarkup, tagsBehindSkippedMarkup_count)
{
    QByteArray tag = "<a";
    tag += QByteArray(" a=''").repeated(300) + "/>";
    for (const QByteArray before : {"<!-- -->", "<!--><![CDATA[-->", "<!---><![CDATA[-->", "<?p ?>",
                                    "<?><![CDATA[?>", "<r><![CDATA[ ]]>", "<r></r>", "<!DOCTYPE a>"}) {
        EXPECT_FALSE(HasModestMarkup(before + tag)) << before.constData();
    }
}

} // namespace
