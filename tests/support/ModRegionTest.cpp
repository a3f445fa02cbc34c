// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ModRegion.h"

#include "fakes/FakePlatform.h"

#include <gtest/gtest.h>

namespace {

// Regional settings whose second call may fail although the first did not.
class UnreliableRegion final : public RegionalSettings
{
public:
    [[nodiscard]] std::uint32_t GetUserDefaultLCID() const override { return 1031; }
    int GetLocaleInfo(std::uint32_t lcid, std::uint32_t lctype, QChar* buffer, int length) const override
    {
        asked << QStringLiteral("%1 %2 %3").arg(lcid).arg(lctype).arg(length);
        if (length == 0) {
            return needed;
        }
        if (written > 0) {
            buffer[0] = u',';
            buffer[1] = QChar();
        }
        return written;
    }
    [[nodiscard]] QLocale UserLocale() const override { return QLocale::c(); }

    int needed = 2;
    int written = 2;
    mutable QStringList asked;
};

TEST(GetLocaleText, known_isTheTextWithoutItsTerminator)
{
    const UnreliableRegion region;
    EXPECT_EQ(GetLocaleText(region, 1031, LOCALE_SDECIMAL), QStringLiteral(","));
    EXPECT_EQ(region.asked, (QStringList{QStringLiteral("1031 14 0"), QStringLiteral("1031 14 2")}));
}

TEST(GetLocaleText, bufferLargerThanTheText_isCutToWhatWasWritten)
{
    UnreliableRegion region;
    region.needed = 9;
    EXPECT_EQ(GetLocaleText(region, 1031, LOCALE_SDECIMAL), QStringLiteral(","));
}

TEST(GetLocaleText, unknown_isEmptyAfterOneCall)
{
    UnreliableRegion region;
    region.needed = 0;
    EXPECT_EQ(GetLocaleText(region, 1, 2), QString());
    EXPECT_EQ(region.asked.size(), 1);
}

TEST(GetLocaleText, secondAnswerFails_isEmpty)
{
    UnreliableRegion region;
    region.written = 0;
    EXPECT_EQ(GetLocaleText(region, 1031, LOCALE_SDECIMAL), QString());
}

TEST(GetDecimalSign, userLocale_isReadWithKind14)
{
    const UnreliableRegion region;
    EXPECT_EQ(GetDecimalSign(region), QStringLiteral(","));
    EXPECT_EQ(region.asked.front(), QStringLiteral("1031 14 0"));
}

TEST(GetDecimalSign, commaLocale_isThatOneCharacter)
{
    FakeRegion region;
    region.locale = QLocale(QLocale::German, QLocale::Germany);
    EXPECT_EQ(GetDecimalSign(region), QStringLiteral(","));
}

} // namespace
