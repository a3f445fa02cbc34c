// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/AngleBox.h"

#include "settings_dialog/DialogTest.h"

#include <QLocale>

namespace {

struct AngleBox
{
    const char* box;
    const char* bar;
    const char* attribute;
};

struct Entry
{
    const char* name;
    const char* locale;
    const char* typed;
    const char* shown;
    int bar;
    const char* saved; // the attribute in each save, in order
};

constexpr AngleBox kBoxes[] = {{"TxtSetFarjAngle", "VScroll2", "angle1"},
                               {"TxtSetIshaAngle", "VScroll3", "angle2"}};

// The stored angle before each entry is -16.5.
constexpr Entry kEntries[] = {
    {"whole", "en_US", "-17", "-17", -17, "-17"},
    {"fraction", "en_US", "-17.5", "-17.5", -18, "-17.5"},
    {"positive", "en_US", "10", "10", 10, "10"},
    {"zero", "en_US", "0", "0", 0, "0"},
    {"blanksAround", "en_US", " -17 ", " -17 ", -17, " -17 "},
    {"exponent", "en_US", "1e1", "1e1", 10, "1e1"},
    {"highest", "en_US", "30", "30", 30, "30"},
    {"justAboveHighest", "en_US", "30.5", "30.5", 30, "30.5"},
    {"lastThatPasses", "en_US", "30.9", "30.9", 30, "30.9"},
    {"firstTooHigh", "en_US", "31", "30", 30, "30|30"},
    {"farTooHigh", "en_US", "1e300", "30", 30, "30|30"},
    {"lowest", "en_US", "-30", "-30", -30, "-30"},
    {"justAboveLowest", "en_US", "-29.5", "-29.5", -30, "-29.5"},
    {"justBelowLowest", "en_US", "-30.1", "-30", -30, "-30|-30"},
    {"empty", "en_US", "", "-16.5", -17, "-16.5"},
    {"loneMinus", "en_US", "-", "-16.5", -17, "-16.5"},
    {"letters", "en_US", "abc", "-16.5", -17, "-16.5"},
    {"notANumber", "en_US", "nan", "-16.5", -17, "-16.5"},
    {"infinite", "en_US", "inf", "-16.5", -17, "-16.5"},
    {"commaWherePointIs", "en_US", "-17,5", "-17.5", -18, "-17.5"},
    {"commaBeforeThreeDigits", "en_US", "1,000", "1.000", 1, "1.000"},
    {"comma", "de_DE", "-17,5", "-17,5", -18, "-17.5"},
    {"pointWhereCommaIs", "de_DE", "-17.5", "-17,5", -18, "-17.5"},
    {"pointBeforeThreeDigits", "de_DE", "-17.500", "-17,500", -18, "-17.500"},
    {"twoSigns", "de_DE", "-1.750,5", "-16,5", -17, "-16.5"},
    {"lettersUnderComma", "de_DE", "abc", "-16,5", -17, "-16.5"},
    {"tooHighUnderComma", "de_DE", "30,9", "30,9", 30, "30.9"},
    {"longMinus", "sv_SE", "\u221217,5", "-17,5", -18, "-17.5"},
    {"directionMarks", "fa_IR", "\u200e\u2212\u06f1\u06f7\u066b\u06f5", "-\u06f1\u06f7\u066b\u06f5", -18,
     "-17.5"},
    {"ownSign", "ar_EG", "-17\u066b5", "-17\u066b5", -18, "-17.5"},
    {"ownDigits", "ar_EG", "-\u0661\u0667\u066b\u0665", "-\u0661\u0667\u066b\u0665", -18, "-17.5"},
    {"ownMinus", "ar_EG", "\u061c-\u0661\u0667", "-\u0661\u0667", -17, "-17"},
    {"tooHighInOwnDigits", "ar_EG", "\u0669\u0669", "30", 30, "30|30"},
    {"lettersUnderOwnSign", "ar_EG", "abc", "-16\u066b5", -17, "-16.5"},
};

void PrintTo(const AngleBox& angle, std::ostream* stream)
{
    *stream << angle.box;
}

class AngleBoxTest : public DialogTest, public testing::WithParamInterface<AngleBox>
{
protected:
    void OpenUserDefined(const char* locale = "en_US", const char* angle = "-16.5")
    {
        platform.region.locale = QLocale(QLatin1String(locale));
        WriteUserDefined(angle, angle);
        Open();
        ASSERT_TRUE(IsOpen());
    }
    [[nodiscard]] QString Attribute() const { return QString::fromUtf8(GetParam().attribute); }
};

} // namespace

TEST_P(AngleBoxTest, entries_areStoredCutOrTakenBack)
{
    for (const Entry& entry : kEntries) {
        SCOPED_TRACE(entry.name);
        OpenUserDefined(entry.locale);
        Paste(GetParam().box, QString::fromUtf8(entry.typed));
        EXPECT_TRUE(IsOpen());
        EXPECT_EQ(TextOf(GetParam().box), QString::fromUtf8(entry.shown));
        EXPECT_EQ(Bar(GetParam().bar).Value(), entry.bar);
        EXPECT_EQ(SavedValues(Attribute()), QString::fromUtf8(entry.saved));
        EXPECT_TRUE(platform.boxes.boxes.empty());
        dialog->Unload();
    }
}

TEST_P(AngleBoxTest, entry_touchesNothingButItsAngle_andFetchesTheDecimalSignAfresh)
{
    OpenUserDefined();
    const QString other = QLatin1String(GetParam().attribute) == u"angle1" ? QStringLiteral("angle2")
                                                                           : QStringLiteral("angle1");
    Paste(GetParam().box, QStringLiteral("-18"));
    EXPECT_EQ(Stored(other), u"-16.5");
    EXPECT_EQ(Stored("method"), u"User Defined");
    EXPECT_EQ(files.loads, 1);
    platform.region.locale = QLocale(QStringLiteral("de_DE"));
    Paste(GetParam().box, QStringLiteral("-17,5"));
    EXPECT_EQ(Stored(Attribute()), u"-17.5");
}

TEST_P(AngleBoxTest, bar_movesFromItsRestingPointByWholeDegrees)
{
    const struct
    {
        const char* locale;
        bool up;
        const char* value;
    } rows[] = {
        {"en_US", true, "-19"}, {"en_US", false, "-21"}, {"de_DE", true, "-19"}, {"ar_EG", false, "-21"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.locale);
        OpenUserDefined(row.locale, "-19.5");
        EXPECT_EQ(Bar(GetParam().bar).Value(), -20);
        ClickArrow(GetParam().bar, row.up);
        EXPECT_EQ(TextOf(GetParam().box), QString::fromUtf8(row.value));
        EXPECT_EQ(SavedValues(Attribute()), QString::fromUtf8(row.value));
        Forget();
        QTest::keyClick(&Widget(GetParam().bar), Qt::Key_Up);
        QTest::keyClick(&Widget(GetParam().bar), Qt::Key_Down);
        EXPECT_EQ(SavedValues(Attribute()),
                  QStringLiteral("%1|%2").arg(Bar(GetParam().bar).Value() + 1).arg(QLatin1String(row.value)));
        dialog->Unload();
    }
}

TEST_P(AngleBoxTest, takenBackWithoutAStoredAngle_endsEmpty)
{
    OpenUserDefined();
    WriteChanged({{Attribute() + QStringLiteral("=\"-15\""), QString()}});
    Paste(GetParam().box, QStringLiteral("abc"));
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(TextOf(GetParam().box), QString());
    EXPECT_EQ(Saves(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Angles, AngleBoxTest, testing::ValuesIn(kBoxes),
                         [](const auto& row) { return std::string(row.param.box); });

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

TEST(AngleText, forFile_hasThePointAndTheMinusOfEveryLocale)
{
    const struct
    {
        const char* locale;
        const char* typed;
        const char16_t* stored;
    } rows[] = {
        {"sv_SE", "\u221217,5", u"-17.5"},
        {"ar_EG", "\u061c-\u0661\u0667", u"-17"},
        {"ar_EG", "-17\u066b5", u"-17.5"},
    };
    for (const auto& row : rows) {
        const QLocale locale(QLatin1String(row.locale));
        EXPECT_EQ(AngleForFile(QString::fromUtf8(row.typed), locale.decimalPoint(), locale), row.stored);
    }
    EXPECT_EQ(AngleForFile(QStringLiteral("-17"), QString(), QLocale::c()), u"-17");
}
