// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Conversions.h"

#include "support/RuntimeError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace {

const QLocale kAmerican(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);
const QLocale kEgyptian(QLocale::Arabic, QLocale::Egypt);
const QLocale kSwedish(QLocale::Swedish, QLocale::Sweden);

// The number of the run-time error that a step throws, 0 for none.
int ErrorOf(const std::function<void()>& step)
{
    try {
        step();
    } catch (const RuntimeError& error) {
        return error.Number();
    }
    return 0;
}

struct NumberRow
{
    const char* name;
    QLocale locale;
    QString text;
    std::optional<double> value;
};

class NumberRows : public testing::TestWithParam<NumberRow>
{
};

TEST_P(NumberRows, text_readsByTheLocale)
{
    const NumberRow& row = GetParam();
    EXPECT_EQ(IsNumeric(row.text, row.locale), row.value.has_value());
    if (row.value) {
        EXPECT_DOUBLE_EQ(ToDouble(row.text, row.locale), *row.value);
    } else {
        EXPECT_EQ(ErrorOf([&] { static_cast<void>(ToDouble(row.text, row.locale)); }),
                  ErrorNumber::kTypeMismatch);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Conversions, NumberRows,
    testing::Values(NumberRow{"point", kAmerican, QStringLiteral("41.12"), 41.12},
                    NumberRow{"comma", kGerman, QStringLiteral("41,12"), 41.12},
                    NumberRow{"commaNegative", kGerman, QStringLiteral("-87,65"), -87.65},
                    NumberRow{"pointWhereCommaIsTheSign", kGerman, QStringLiteral("41.12"), std::nullopt},
                    NumberRow{"arabicSignLatinDigits", kEgyptian, QStringLiteral("41٫12"), 41.12},
                    NumberRow{"arabicSignLatinDigitsNegative", kEgyptian, QStringLiteral("-87٫65"), -87.65},
                    NumberRow{"arabicDigits", kEgyptian, QStringLiteral("٤١٫١٢"), 41.12},
                    NumberRow{"arabicLatinDigitsOnly", kEgyptian, QStringLiteral("-15"), -15.0},
                    NumberRow{"minusOfTheLocale", kSwedish, QStringLiteral("\u221215"), -15.0},
                    NumberRow{"plainMinusWhereAnotherIsUsual", kSwedish, QStringLiteral("-15"), -15.0},
                    NumberRow{"plus", kAmerican, QStringLiteral("+3"), 3.0},
                    NumberRow{"blanksAround", kAmerican, QStringLiteral("  7 "), 7.0},
                    NumberRow{"groupInPlace", kAmerican, QStringLiteral("1,234.5"), 1234.5},
                    NumberRow{"exponent", kAmerican, QStringLiteral("1e3"), 1000.0},
                    NumberRow{"empty", kAmerican, QString(), std::nullopt},
                    NumberRow{"blanks", kAmerican, QStringLiteral("   "), std::nullopt},
                    NumberRow{"word", kAmerican, QStringLiteral("north"), std::nullopt},
                    NumberRow{"numberAndWord", kAmerican, QStringLiteral("41 N"), std::nullopt},
                    NumberRow{"twoPoints", kAmerican, QStringLiteral("4.1.2"), std::nullopt},
                    NumberRow{"infinity", kAmerican, QStringLiteral("inf"), std::nullopt},
                    NumberRow{"notANumber", kAmerican, QStringLiteral("nan"), std::nullopt},
                    NumberRow{"beyondEveryNumber", kAmerican, QStringLiteral("1e999"), std::nullopt}),
    [](const testing::TestParamInfo<NumberRow>& row) { return std::string(row.param.name); });

struct RoundingRow
{
    const char* name;
    double value;
    std::optional<std::int16_t> rounded;
};

class RoundingRows : public testing::TestWithParam<RoundingRow>
{
};

TEST_P(RoundingRows, number_roundsToTheNearest_halvesToTheEven)
{
    const RoundingRow& row = GetParam();
    if (row.rounded) {
        EXPECT_EQ(ToInteger16(row.value), *row.rounded);
    } else {
        EXPECT_EQ(ErrorOf([&] { static_cast<void>(ToInteger16(row.value)); }), ErrorNumber::kOverflow);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Conversions, RoundingRows,
    testing::Values(
        RoundingRow{"half", 0.5, 0}, RoundingRow{"oneAndAHalf", 1.5, 2}, RoundingRow{"fiveAndAHalf", 5.5, 6},
        RoundingRow{"sixAndAHalf", 6.5, 6}, RoundingRow{"minusHalf", -0.5, 0},
        RoundingRow{"minus17AndAHalf", -17.5, -18}, RoundingRow{"minus19AndAHalf", -19.5, -20},
        RoundingRow{"minus18AndAHalf", -18.5, -18}, RoundingRow{"justBelowHalf", 0.49999999999999994, 0},
        RoundingRow{"justAboveHalf", 0.50000000000000011, 1}, RoundingRow{"largest", 32767.0, 32767},
        RoundingRow{"largestWithFraction", 32767.4, 32767}, RoundingRow{"overLargest", 32767.5, std::nullopt},
        RoundingRow{"smallest", -32768.0, -32768}, RoundingRow{"smallestByRounding", -32768.5, -32768},
        RoundingRow{"belowSmallest", -32768.6, std::nullopt},
        RoundingRow{"notANumber", std::numeric_limits<double>::quiet_NaN(), std::nullopt},
        RoundingRow{"infinite", std::numeric_limits<double>::infinity(), std::nullopt}),
    [](const testing::TestParamInfo<RoundingRow>& row) { return std::string(row.param.name); });

TEST(ToInteger16, text_isReadAndRounded)
{
    EXPECT_EQ(ToInteger16(QStringLiteral("-17.5"), kAmerican), -18);
    EXPECT_EQ(ToInteger16(QStringLiteral("-17,5"), kGerman), -18);
    EXPECT_EQ(ErrorOf([] { static_cast<void>(ToInteger16(QStringLiteral("40000"), kAmerican)); }),
              ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { static_cast<void>(ToInteger16(QString(), kAmerican)); }),
              ErrorNumber::kTypeMismatch);
}

struct BooleanRow
{
    const char* name;
    QString text;
    std::optional<bool> value;
};

class BooleanRows : public testing::TestWithParam<BooleanRow>
{
};

TEST_P(BooleanRows, text_isTrueOrFalseOrAMismatch)
{
    const BooleanRow& row = GetParam();
    if (row.value) {
        EXPECT_EQ(ToBoolean(row.text, kAmerican), *row.value);
    } else {
        EXPECT_EQ(ErrorOf([&] { static_cast<void>(ToBoolean(row.text, kAmerican)); }),
                  ErrorNumber::kTypeMismatch);
    }
}

INSTANTIATE_TEST_SUITE_P(Conversions, BooleanRows,
                         testing::Values(BooleanRow{"true_", QStringLiteral("true"), true},
                                         BooleanRow{"trueInCapitals", QStringLiteral("TRUE"), true},
                                         BooleanRow{"trueMixed", QStringLiteral("True"), true},
                                         BooleanRow{"false_", QStringLiteral("false"), false},
                                         BooleanRow{"falseMixed", QStringLiteral("fAlSe"), false},
                                         BooleanRow{"zero", QStringLiteral("0"), false},
                                         BooleanRow{"one", QStringLiteral("1"), true},
                                         BooleanRow{"minusOne", QStringLiteral("-1"), true},
                                         BooleanRow{"fraction", QStringLiteral("0.5"), true},
                                         BooleanRow{"maybe", QStringLiteral("maybe"), std::nullopt},
                                         BooleanRow{"yes", QStringLiteral("yes"), std::nullopt},
                                         BooleanRow{"empty", QString(), std::nullopt}),
                         [](const testing::TestParamInfo<BooleanRow>& row) {
                             return std::string(row.param.name);
                         });

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
    EXPECT_EQ(ErrorOf([] { static_cast<void>(MultiplyInteger16(328, 100)); }), ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { static_cast<void>(MultiplyInteger16(-328, 100)); }), ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { static_cast<void>(MultiplyInteger16(100'000, 100'000)); }),
              ErrorNumber::kOverflow);
}

TEST(AddInteger16, sum_inRangeOrOverflow)
{
    EXPECT_EQ(AddInteger16(-360, 60), -300);
    EXPECT_EQ(AddInteger16(32766, 1), 32767);
    EXPECT_EQ(ErrorOf([] { static_cast<void>(AddInteger16(32767, 1)); }), ErrorNumber::kOverflow);
    EXPECT_EQ(ErrorOf([] { static_cast<void>(AddInteger16(-32768, -1)); }), ErrorNumber::kOverflow);
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
