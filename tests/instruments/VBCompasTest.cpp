// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/VBCompas.h"

#include "fakes/FakePlatform.h"

#include <QLabel>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kCentreX = 787.5;
constexpr double kCentreY = 727.5;
constexpr double kLength = 490.5;
constexpr double kNearly = 1e-9;

class VBCompasTest : public testing::Test
{
protected:
    [[nodiscard]] QString Caption() const
    {
        return compass.findChild<QLabel*>(QStringLiteral("LblAngle"))->text();
    }

    FakeRegion region;
    VBCompas compass{region, nullptr};
};

TEST_F(VBCompasTest, creation_pointsNorth)
{
    EXPECT_EQ(Caption(), QStringLiteral("Angle: North"));
    EXPECT_EQ(compass.Pointer().X1, kCentreX);
    EXPECT_EQ(compass.Pointer().Y1, kCentreY);
    EXPECT_EQ(compass.Pointer().X2, kCentreX);
    EXPECT_EQ(compass.Pointer().Y2, kCentreY - kLength);
}

TEST_F(VBCompasTest, creation_hasTheSizeAndTheShapeOfTheDesign)
{
    EXPECT_EQ(compass.size(), QSize(102, 117));
    EXPECT_EQ(compass.Circle().Left, 360.0);
    EXPECT_EQ(compass.Circle().Top, 240.0);
    EXPECT_EQ(compass.Circle().Width, 855.0);
    EXPECT_EQ(compass.Circle().Height, 975.0);
}

struct LetterRow
{
    const char* name;
    const char* caption;
    QRect place;
};

class VBCompasLetter : public testing::TestWithParam<LetterRow>
{
};

TEST_P(VBCompasLetter, creation_standsInItsPlace)
{
    const FakeRegion region;
    const VBCompas compass(region, nullptr);
    const auto* const label = compass.findChild<QLabel*>(QLatin1String(GetParam().name));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), QLatin1String(GetParam().caption));
    EXPECT_EQ(label->geometry(), GetParam().place);
    EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
}

INSTANTIATE_TEST_SUITE_P(All, VBCompasLetter,
                         testing::Values(LetterRow{"LblNorth", "N", {48, 0, 9, 17}},
                                         LetterRow{"LblEast", "E", {88, 40, 9, 17}},
                                         LetterRow{"LblSouth", "S", {48, 80, 9, 17}},
                                         LetterRow{"LblWest", "W", {8, 40, 17, 17}},
                                         LetterRow{"LblAngle", "Angle: North", {8, 96, 89, 17}}),
                         [](const auto& row) { return row.param.name; });

struct AngleRow
{
    const char* name;
    double angle;
    double x2;
    double y2;
    const char* caption;
};

double GeneralX(double angle)
{
    return kCentreX + std::sin(angle * 3.14159 / 180.0) * kLength;
}

double GeneralY(double angle)
{
    return kCentreY - std::cos(angle * 3.14159 / 180.0) * kLength;
}

class VBCompasAngle : public testing::TestWithParam<AngleRow>
{
};

TEST_P(VBCompasAngle, set_turnsPointerAndCaption)
{
    const FakeRegion region;
    VBCompas compass(region, nullptr);
    compass.SetNewAngle(45.0);
    const AngleRow& row = GetParam();
    compass.SetNewAngle(row.angle);
    EXPECT_EQ(compass.findChild<QLabel*>(QStringLiteral("LblAngle"))->text(), QLatin1String(row.caption));
    EXPECT_EQ(compass.accessibleName(), QLatin1String(row.caption));
    EXPECT_EQ(compass.Pointer().X1, kCentreX);
    EXPECT_EQ(compass.Pointer().Y1, kCentreY);
    EXPECT_NEAR(compass.Pointer().X2, row.x2, kNearly);
    EXPECT_NEAR(compass.Pointer().Y2, row.y2, kNearly);
}

INSTANTIATE_TEST_SUITE_P(
    All, VBCompasAngle,
    testing::Values(AngleRow{"zero", 0.0, kCentreX, kCentreY - kLength, "Angle: North"},
                    AngleRow{"below_one", 0.9, kCentreX, kCentreY - kLength, "Angle: North"},
                    AngleRow{"one", 1.0, GeneralX(1.0), GeneralY(1.0), "Angle: 1"},
                    AngleRow{"north_east", 58.4, GeneralX(58.4), GeneralY(58.4), "Angle: 58.4"},
                    AngleRow{"just_below_east", 89.9, GeneralX(89.9), GeneralY(89.9), "Angle: 89.9"},
                    AngleRow{"east", 90.0, kCentreX + kLength, kCentreY, "Angle: East"},
                    AngleRow{"east_with_decimals", 90.5, kCentreX + kLength, kCentreY, "Angle: East"},
                    AngleRow{"last_of_east", 90.999, kCentreX + kLength, kCentreY, "Angle: East"},
                    AngleRow{"past_east", 91.0, GeneralX(91.0), GeneralY(91.0), "Angle: 91"},
                    AngleRow{"south", 180.0, kCentreX, kCentreY + kLength, "Angle: South"},
                    AngleRow{"south_with_decimals", 180.7, kCentreX, kCentreY + kLength, "Angle: South"},
                    AngleRow{"west", 270.0, kCentreX - kLength, kCentreY, "Angle: West"},
                    AngleRow{"west_with_decimals", 270.3, kCentreX - kLength, kCentreY, "Angle: West"},
                    AngleRow{"just_below_north", 359.9, GeneralX(359.9), GeneralY(359.9), "Angle: 359.9"},
                    AngleRow{"full_turn", 360.0, kCentreX, kCentreY - kLength, "Angle: North"},
                    AngleRow{"full_turn_with_decimals", 360.5, kCentreX, kCentreY - kLength, "Angle: North"},
                    AngleRow{"beyond_a_turn", 450.0, GeneralX(450.0), GeneralY(450.0), "Angle: 450"},
                    AngleRow{"negative_half", -0.5, GeneralX(-0.5), GeneralY(-0.5), "Angle: -0.5"},
                    AngleRow{"many_decimals", 12.3456789, GeneralX(12.3456789), GeneralY(12.3456789),
                             "Angle: 12.3456789"},
                    AngleRow{"largest", 32767.0, GeneralX(32767.0), GeneralY(32767.0), "Angle: 32767"},
                    AngleRow{"smallest", -32768.0, GeneralX(-32768.0), GeneralY(-32768.0), "Angle: -32768"}),
    [](const auto& row) { return row.param.name; });

// The cut pi is told from the full one by the far end of the range: there they differ by more than a pixel.
TEST_F(VBCompasTest, pi_isCutToSixDigits)
{
    compass.SetNewAngle(32000.0);
    EXPECT_NEAR(compass.Pointer().X2, GeneralX(32000.0), kNearly);
    const double exact = kCentreX + std::sin(32000.0 * std::acos(-1.0) / 180.0) * kLength;
    EXPECT_GT(std::abs(compass.Pointer().X2 - exact), 0.05);
}

TEST_F(VBCompasTest, northEast_pointsUpAndToTheRight)
{
    compass.SetNewAngle(58.4);
    EXPECT_GT(compass.Pointer().X2, kCentreX + 400.0);
    EXPECT_LT(compass.Pointer().Y2, kCentreY - 200.0);
}

TEST_F(VBCompasTest, decimals_followTheUsersLocale)
{
    region.locale = QLocale(QLocale::German, QLocale::Germany);
    compass.SetNewAngle(58.4);
    EXPECT_EQ(Caption(), QStringLiteral("Angle: 58,4"));
}

// As in the times and dates beside it.
TEST_F(VBCompasTest, digits_areLatinOnEachLocale)
{
    region.locale = QLocale(QLocale::Arabic, QLocale::Egypt);
    ASSERT_EQ(region.locale.toString(1), QStringLiteral("\u0661"));
    compass.SetNewAngle(58.4);
    EXPECT_EQ(Caption(), QStringLiteral("Angle: 58\u066b4"));
}

class VBCompasFailure : public testing::TestWithParam<double>
{
};

TEST_P(VBCompasFailure, angleOutOfRange_leavesThePointer)
{
    const FakeRegion region;
    VBCompas compass(region, nullptr);
    compass.SetNewAngle(58.4);
    const VBCompas::Line before = compass.Pointer();
    EXPECT_NO_THROW(compass.SetNewAngle(GetParam()));
    EXPECT_EQ(compass.Pointer().X2, before.X2);
    EXPECT_EQ(compass.Pointer().Y2, before.Y2);
    EXPECT_EQ(compass.findChild<QLabel*>(QStringLiteral("LblAngle"))->text(), QStringLiteral("Angle: 58.4"));
}

INSTANTIATE_TEST_SUITE_P(All, VBCompasFailure,
                         testing::Values(32768.0, -32768.5, 1e300, std::numeric_limits<double>::infinity(),
                                         std::numeric_limits<double>::quiet_NaN()));

TEST_F(VBCompasTest, painting_drawsRoundCardAndPointer)
{
    compass.SetNewAngle(90.0);
    const QImage picture = compass.grab().toImage();
    const QRgb card = picture.pixel(45, 60);
    EXPECT_EQ(picture.pixel(60, 60), card);
    EXPECT_NE(picture.pixel(26, 22), card) << "the corner of the frame lies outside the circle";
    EXPECT_NE(picture.pixel(65, 48), card) << "the pointer runs east";
    EXPECT_EQ(picture.pixel(40, 48), card) << "nothing runs west";
    EXPECT_NE(picture.pixel(82, 48), picture.pixel(82, 30)) << "the tip leaves the card";
}

} // namespace
