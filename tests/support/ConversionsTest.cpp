// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Conversions.h"

#include "fakes/ErrorOf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

namespace {

const QLocale kAmerican(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);
const QLocale kEgyptian(QLocale::Arabic, QLocale::Egypt);
const QLocale kSwedish(QLocale::Swedish, QLocale::Sweden);

TEST(ToDouble, text_readsByTheLocale)
{
    struct Row
    {
        const char* name;
        QLocale locale;
        QString text;
        std::optional<double> value;
    };
    const Row rows[]{{"point", kAmerican, QStringLiteral("41.12"), 41.12},
                     {"comma", kGerman, QStringLiteral("41,12"), 41.12},
                     {"commaNegative", kGerman, QStringLiteral("-87,65"), -87.65},
                     {"pointWhereCommaIsTheSign", kGerman, QStringLiteral("41.12"), std::nullopt},
                     {"arabicSignLatinDigits", kEgyptian, QStringLiteral("41٫12"), 41.12},
                     {"arabicSignLatinDigitsNegative", kEgyptian, QStringLiteral("-87٫65"), -87.65},
                     {"arabicDigits", kEgyptian, QStringLiteral("٤١٫١٢"), 41.12},
                     {"arabicDigitsElsewhere", kGerman, QStringLiteral("٤٠,١٢"), 40.12},
                     {"superscript", kAmerican, QStringLiteral("4²"), std::nullopt},
                     {"arabicLatinDigitsOnly", kEgyptian, QStringLiteral("-15"), -15.0},
                     {"minusOfTheLocale", kSwedish, QStringLiteral("\u221215"), -15.0},
                     {"plainMinusWhereAnotherIsUsual", kSwedish, QStringLiteral("-15"), -15.0},
                     {"plus", kAmerican, QStringLiteral("+3"), 3.0},
                     {"blanksAround", kAmerican, QStringLiteral("  7 "), 7.0},
                     {"groupInPlace", kAmerican, QStringLiteral("1,234.5"), 1234.5},
                     {"exponent", kAmerican, QStringLiteral("1e3"), 1000.0},
                     {"empty", kAmerican, QString(), std::nullopt},
                     {"blanks", kAmerican, QStringLiteral("   "), std::nullopt},
                     {"word", kAmerican, QStringLiteral("north"), std::nullopt},
                     {"numberAndWord", kAmerican, QStringLiteral("41 N"), std::nullopt},
                     {"twoPoints", kAmerican, QStringLiteral("4.1.2"), std::nullopt},
                     {"infinity", kAmerican, QStringLiteral("inf"), std::nullopt},
                     {"notANumber", kAmerican, QStringLiteral("nan"), std::nullopt},
                     {"beyondEveryNumber", kAmerican, QStringLiteral("1e999"), std::nullopt}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(IsNumeric(row.text, row.locale), row.value.has_value());
        if (row.value) {
            EXPECT_DOUBLE_EQ(ToDouble(row.text, row.locale), *row.value);
        } else {
            EXPECT_EQ(ErrorOf([&] { return ToDouble(row.text, row.locale); }), ErrorNumber::kTypeMismatch);
        }
    }
}

TEST(ToInteger16, number_roundsToTheNearest_halvesToTheEven)
{
    using Limits = std::numeric_limits<double>;
    const std::pair<double, std::optional<std::int16_t>> rows[]{{0.5, 0},
                                                                {1.5, 2},
                                                                {5.5, 6},
                                                                {6.5, 6},
                                                                {-0.5, 0},
                                                                {-17.5, -18},
                                                                {-19.5, -20},
                                                                {-18.5, -18},
                                                                {0.49999999999999994, 0},
                                                                {0.50000000000000011, 1},
                                                                {32767.0, 32767},
                                                                {32767.4, 32767},
                                                                {32767.5, std::nullopt},
                                                                {-32768.0, -32768},
                                                                {-32768.5, -32768},
                                                                {-32768.6, std::nullopt},
                                                                {Limits::quiet_NaN(), std::nullopt},
                                                                {Limits::infinity(), std::nullopt}};
    for (const auto& [number, rounded] : rows) {
        const double value = number;
        SCOPED_TRACE(value);
        if (rounded) {
            EXPECT_EQ(ToInteger16(value), *rounded);
        } else {
            EXPECT_EQ(ErrorOf([value] { return ToInteger16(value); }), ErrorNumber::kOverflow);
        }
    }
}

TEST(ToInteger16, text_isReadAndRounded)
{
    EXPECT_EQ(ToInteger16(QStringLiteral("-17.5"), kAmerican), -18);
    EXPECT_EQ(ToInteger16(QStringLiteral("-17,5"), kGerman), -18);
    EXPECT_EQ(ErrorOf([] { return ToInteger16(QStringLiteral("40000"), kAmerican); }),
              ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { return ToInteger16(QString(), kAmerican); }), ErrorNumber::kTypeMismatch);
}

TEST(ToBoolean, text_isTrueOrFalseOrAMismatch)
{
    const std::pair<const char*, std::optional<bool>> rows[]{
        {"true", true},        {"TRUE", true},    {"True", true}, {"false", false}, {"fAlSe", false},
        {"0", false},          {"1", true},       {"-1", true},   {"0.5", true},    {"maybe", std::nullopt},
        {"yes", std::nullopt}, {"", std::nullopt}};
    for (const auto& [row, value] : rows) {
        const QString text = QLatin1String(row);
        if (value) {
            EXPECT_EQ(ToBoolean(text, kAmerican), *value) << row;
        } else {
            EXPECT_EQ(ErrorOf([&text] { return ToBoolean(text, kAmerican); }), ErrorNumber::kTypeMismatch)
                << row;
        }
    }
}

TEST(Int, anyNumber_isTheWholeNumberAtOrBelow)
{
    EXPECT_EQ(Int(41.99), 41.0);
    EXPECT_EQ(Int(-41.01), -42.0);
    EXPECT_EQ(Int(-42.0), -42.0);
}

TEST(MultiplyInteger16, product_inRangeOrOverflow)
{
    EXPECT_EQ(MultiplyInteger16(-15, 100), -1500);
    EXPECT_EQ(MultiplyInteger16(327, 100), 32700);
    EXPECT_EQ(MultiplyInteger16(-327, 100), -32700);
    EXPECT_EQ(ErrorOf([] { return MultiplyInteger16(328, 100); }), ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { return MultiplyInteger16(-328, 100); }), ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { return MultiplyInteger16(100'000, 100'000); }), ErrorNumber::kOverflow);
}

TEST(AddInteger16, sum_inRangeOrOverflow)
{
    EXPECT_EQ(AddInteger16(-360, 60), -300);
    EXPECT_EQ(AddInteger16(32766, 1), 32767);
    EXPECT_EQ(ErrorOf([] { return AddInteger16(32767, 1); }), ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { return AddInteger16(-32768, -1); }), ErrorNumber::kOverflow);
}

TEST(ToText, numbers_carryTheSignOfTheLocale_andNoGroups)
{
    EXPECT_EQ(ToText(-17.5, kAmerican), QStringLiteral("-17.5"));
    EXPECT_EQ(ToText(-17.5, kGerman), QStringLiteral("-17,5"));
    EXPECT_EQ(ToText(1234567.0, kAmerican), QStringLiteral("1234567"));
    EXPECT_EQ(ToText(0.1, kAmerican), QStringLiteral("0.1"));
    EXPECT_EQ(ToText(-15.0, kAmerican), QStringLiteral("-15"));
}

TEST(ToText, localeWithDigitsOfItsOwn_changesTheSignOnly)
{
    EXPECT_EQ(ToText(-17.5, kEgyptian), QStringLiteral("-17\u066b5"));
    EXPECT_EQ(ToText(1234567.0, kEgyptian), QStringLiteral("1234567"));
    EXPECT_EQ(ToText(-17.5, kSwedish), QStringLiteral("-17,5"));
}

TEST(ToText, anyNumber_readsBackAsItself)
{
    for (const QLocale& locale : {kAmerican, kGerman, kEgyptian, kSwedish}) {
        for (const double value : {0.0, -15.0, 41.12, -87.65, 0.001, 32767.0, 100000.0}) {
            EXPECT_DOUBLE_EQ(ToDouble(ToText(value, locale), locale), value)
                << locale.name().toStdString() << " " << value;
        }
    }
}

} // namespace
