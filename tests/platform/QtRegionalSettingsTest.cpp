// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtDesktop.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace {

// One process for each row: the locale of the system is read once in a process.
TEST(QtRegionalSettings, pointedTextOfAFile_readsAsItsNumber)
{
    const std::pair<const char*, const char*> rows[]{
        {"LC_ALL=en_US.UTF-8", "."},
        {"LC_ALL=de_DE.UTF-8", ","},
        {"LC_ALL=ar_EG.UTF-8", "\u066B"},
        {"LC_ALL=sv_SE.UTF-8", ","},
        {"LC_ALL=fa_IR.UTF-8", "\u066B"},
        {"LC_ALL=de_CH.UTF-8", "."},
        {"LC_ALL=tr_TR.UTF-8", ","},
        {"LC_ALL=C", "."},
        {"", "."},
        {"LANG=de_DE.UTF-8", ","},
        {"LANG=de_DE.UTF-8 LC_NUMERIC=en_US.UTF-8", "."},
        {"LC_ALL=de_DE.UTF-8 LC_NUMERIC=en_US.UTF-8", ","},
    };
    QStringList unchanged = QProcess::systemEnvironment();
    unchanged.removeIf([](const QString& variable) {
        return variable.startsWith(QStringLiteral("LC_")) || variable.startsWith(QStringLiteral("LANG"));
    });
    for (const auto& [variables, sign] : rows) {
        QProcess process;
        process.setEnvironment(unchanged + QString::fromLatin1(variables).split(u' '));
        process.start(QStringLiteral(DUSKBEACON_REGION), QStringList());
        ASSERT_TRUE(process.waitForFinished(20'000));
        EXPECT_EQ(QString::fromUtf8(process.readAllStandardOutput()).trimmed(),
                  QStringLiteral("[%1] 41.12 -87.65 -18 41.12").arg(QString::fromUtf8(sign)))
            << variables;
    }
}

TEST(QtRegionalSettings, anythingButTheUsersDecimalSign_isUnknown)
{
    const QtRegionalSettings region;
    EXPECT_EQ(GetLocaleText(region, region.GetUserDefaultLCID(), LOCALE_SDECIMAL + 1), QString());
    EXPECT_EQ(GetLocaleText(region, region.GetUserDefaultLCID() + 1, LOCALE_SDECIMAL), QString());
}

TEST(QtRegionalSettings, bufferThatIsTooSmall_takesNothing)
{
    const QtRegionalSettings region;
    QChar buffer(u'x');
    EXPECT_EQ(region.GetLocaleInfo(region.GetUserDefaultLCID(), LOCALE_SDECIMAL, &buffer, 1), 0);
    EXPECT_EQ(buffer, QChar(u'x'));
    EXPECT_EQ(region.GetLocaleInfo(region.GetUserDefaultLCID(), LOCALE_SDECIMAL, nullptr, 0), 2);
}

TEST(QtRegionalSettings, bufferThatFits_takesTheSignAndATerminator)
{
    const QtRegionalSettings region;
    QString buffer = QStringLiteral("xxx");
    EXPECT_EQ(region.GetLocaleInfo(region.GetUserDefaultLCID(), LOCALE_SDECIMAL, buffer.data(), 2), 2);
    EXPECT_EQ(buffer, QStringLiteral(".") + QChar() + u'x');
}

} // namespace
