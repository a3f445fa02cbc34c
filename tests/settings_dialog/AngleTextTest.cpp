// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/AngleBox.h"

#include <QLocale>

#include <gtest/gtest.h>

TEST(AngleText, forBox_putsTheUsersSignInPlaceOfEachPoint)
{
    EXPECT_EQ(AngleForBox(QStringLiteral("-19.5"), QStringLiteral(",")), u"-19,5");
    EXPECT_EQ(AngleForBox(QStringLiteral("-19.5"), QStringLiteral(".")), u"-19.5");
    EXPECT_EQ(AngleForBox(QStringLiteral("1.2.3"), QStringLiteral(",")), u"1,2,3");
    EXPECT_EQ(AngleForBox(QString(), QStringLiteral(",")), QString());
}

TEST(AngleText, asTyped_hasTheSignsOfTheUser)
{
    const struct
    {
        QString decimalSign;
        QString text;
        QString typed;
    } rows[] = {
        {QStringLiteral("."), QStringLiteral("-16,5"), QStringLiteral("-16.5")},
        {QStringLiteral(","), QStringLiteral("-1.2,5"), QStringLiteral("-1,2,5")},
        {QStringLiteral("\u066b"), QStringLiteral("\u061c-16\u066b5"), QStringLiteral("-16\u066b5")},
        {QStringLiteral("\u066b"), QStringLiteral("\u200e\u221216.5"), QStringLiteral("-16\u066b5")},
        {QStringLiteral("."), QStringLiteral("\u200f\u2212\u2212"), QStringLiteral("--")},
        {QString(), QStringLiteral("1.2,3"), QStringLiteral("1.2,3")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(AngleAsTyped(row.text, row.decimalSign), row.typed) << row.text.toStdString();
    }
}

TEST(AngleText, forFile_canBeReadUnderEveryLocale)
{
    const struct
    {
        const char* name;
        QString locale;
        QString typed;
        QString stored;
    } rows[] = {
        {"point", QStringLiteral("en_US"), QStringLiteral("-17.5"), QStringLiteral("-17.5")},
        {"comma", QStringLiteral("de_DE"), QStringLiteral("-17,5"), QStringLiteral("-17.5")},
        {"whole", QStringLiteral("de_DE"), QStringLiteral("12"), QStringLiteral("12")},
        {"long minus", QStringLiteral("sv_SE"), QStringLiteral("\u221217,5"), QStringLiteral("-17.5")},
        {"own sign, Latin digits", QStringLiteral("ar_EG"), QStringLiteral("-17\u066b5"),
         QStringLiteral("-17.5")},
        {"own digits", QStringLiteral("ar_EG"), QStringLiteral("-\u0661\u0667\u066b\u0665"),
         QStringLiteral("-17.5")},
        {"own minus", QStringLiteral("ar_EG"), QStringLiteral("\u061c-\u0661\u0667"), QStringLiteral("-17")},
    };
    for (const auto& row : rows) {
        const QLocale locale(row.locale);
        EXPECT_EQ(AngleForFile(row.typed, locale.decimalPoint(), locale), row.stored) << row.name;
    }
}

TEST(AngleText, forFile_withoutADecimalSign_leavesTheTextAlone)
{
    EXPECT_EQ(AngleForFile(QStringLiteral("-17"), QString(), QLocale::c()), u"-17");
}
