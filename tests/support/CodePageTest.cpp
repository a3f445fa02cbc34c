// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CodePage.h"

#include <gtest/gtest.h>

namespace {

// Source: https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WINDOWS/CP1252.TXT, bytes 80 to 9F; the five
// without a character there map to themselves.
constexpr char16_t kUpperControls[] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                       0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

TEST(CodePage, everyByte_survivesARoundTrip)
{
    for (int value = 0; value < 256; ++value) {
        const QByteArray byte(1, static_cast<char>(value));
        const bool isUpperControl = value >= 0x80 && value < 0xA0;
        const QChar expected(isUpperControl ? kUpperControls[value - 0x80] : static_cast<char16_t>(value));
        EXPECT_EQ(FromCodePage(byte), QString(expected)) << value;
        EXPECT_EQ(ToCodePage(QString(expected)), byte) << value;
    }
}

TEST(CodePage, characterOutsideTheCodePage_becomesAQuestionMark)
{
    for (const char16_t* const text :
         {u"\u0645", u"\u0100", u"\uFF21", u"\u0080", u"\U0001F54C", u"\uFFFD"}) {
        EXPECT_EQ(ToCodePage(QString::fromUtf16(text)), "?") << QString::fromUtf16(text).toStdString();
    }
    EXPECT_EQ(ToCodePage(QStringLiteral("a\u0645\u0646b")), "a??b");
}

TEST(CodePage, exactDecoding_takesNoInvalidByte)
{
    EXPECT_EQ(FromEncodingExactly("a\x80", "windows-1252"), QStringLiteral("a\u20AC"));
    EXPECT_EQ(FromEncodingExactly("\xC7", "windows-1256"), QStringLiteral("\u0627"));
    EXPECT_EQ(FromEncodingExactly("\x83\x65", "Shift_JIS"), QStringLiteral("\u30C6"));
    EXPECT_EQ(FromEncodingExactly("\xD2", "windows-1253"), std::nullopt) << "no character";
    EXPECT_EQ(FromEncodingExactly("a\x83", "Shift_JIS"), std::nullopt) << "half a character";
    EXPECT_EQ(FromEncodingExactly("a", "no-such"), std::nullopt);
    EXPECT_EQ(FromEncodingExactly("a", ""), std::nullopt);
}

TEST(CodePage, emptyText_staysEmpty)
{
    EXPECT_EQ(ToCodePage(QString()), QByteArray());
    EXPECT_EQ(FromCodePage(QByteArray()), QString());
}

} // namespace
