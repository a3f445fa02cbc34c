// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtRegionalSettings.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace {

struct LocaleRow
{
    const char* name;
    QList<std::pair<QString, QString>> environment;
    const char* sign;
};

class LocaleRows : public testing::TestWithParam<LocaleRow>
{
};

// A process of its own for each row, since the system's locale is read once in a process.
TEST_P(LocaleRows, pointedTextOfAFile_readsAsItsNumber)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : environment.keys()) {
        if (name.startsWith(QStringLiteral("LC_")) || name == QStringLiteral("LANG") ||
            name == QStringLiteral("LANGUAGE")) {
            environment.remove(name);
        }
    }
    for (const auto& [name, value] : GetParam().environment) {
        environment.insert(name, value);
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(DUSKBEACON_REGION), QStringList());
    ASSERT_TRUE(process.waitForFinished(20'000));
    EXPECT_EQ(QString::fromUtf8(process.readAllStandardOutput()).trimmed(),
              QStringLiteral("[%1] 41.12 -87.65 -18 41.12").arg(QString::fromUtf8(GetParam().sign)));
}

const QString kAll = QStringLiteral("LC_ALL");
const QString kNumeric = QStringLiteral("LC_NUMERIC");
const QString kLanguage = QStringLiteral("LANG");

INSTANTIATE_TEST_SUITE_P(
    QtRegionalSettings, LocaleRows,
    testing::Values(
        LocaleRow{"american", {{kAll, QStringLiteral("en_US.UTF-8")}}, "."},
        LocaleRow{"german", {{kAll, QStringLiteral("de_DE.UTF-8")}}, ","},
        LocaleRow{"egyptian", {{kAll, QStringLiteral("ar_EG.UTF-8")}}, "\u066B"},
        LocaleRow{"swedish", {{kAll, QStringLiteral("sv_SE.UTF-8")}}, ","},
        LocaleRow{"persian", {{kAll, QStringLiteral("fa_IR.UTF-8")}}, "\u066B"},
        LocaleRow{"swiss", {{kAll, QStringLiteral("de_CH.UTF-8")}}, "."},
        LocaleRow{"turkish", {{kAll, QStringLiteral("tr_TR.UTF-8")}}, ","},
        LocaleRow{"plain", {{kAll, QStringLiteral("C")}}, "."}, LocaleRow{"none", {}, "."},
        LocaleRow{"byLanguage", {{kLanguage, QStringLiteral("de_DE.UTF-8")}}, ","},
        LocaleRow{"numbersBeforeLanguage",
                  {{kLanguage, QStringLiteral("de_DE.UTF-8")}, {kNumeric, QStringLiteral("en_US.UTF-8")}},
                  "."},
        LocaleRow{"allBeforeNumbers",
                  {{kAll, QStringLiteral("de_DE.UTF-8")}, {kNumeric, QStringLiteral("en_US.UTF-8")}},
                  ","}),
    [](const testing::TestParamInfo<LocaleRow>& row) { return std::string(row.param.name); });

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

} // namespace
