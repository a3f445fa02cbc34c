// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/VBCompas.h"

#include "fakes/FakePlatform.h"
#include "fakes/PaintCount.h"

#include <QLabel>
#include <QTest>

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

TEST_F(VBCompasTest, creation_pointsNorth_inTheSizeAndTheShapeOfTheDesign)
{
    EXPECT_EQ(compass.Pointer().X1, kCentreX);
    EXPECT_EQ(compass.Pointer().Y1, kCentreY);
    EXPECT_EQ(compass.Pointer().X2, kCentreX);
    EXPECT_EQ(compass.Pointer().Y2, kCentreY - kLength);
    EXPECT_EQ(compass.size(), QSize(102, 117));
    EXPECT_EQ(compass.Circle().Left, 360.0);
    EXPECT_EQ(compass.Circle().Top, 240.0);
    EXPECT_EQ(compass.Circle().Width, 855.0);
    EXPECT_EQ(compass.Circle().Height, 975.0);
}

TEST_F(VBCompasTest, creation_lettersStandInTheirPlaces)
{
    struct Row
    {
        const char* name;
        const char* caption;
        QRect place;
    };
    const Row rows[]{{"LblNorth", "N", {48, 0, 9, 17}},
                     {"LblEast", "E", {88, 40, 9, 17}},
                     {"LblSouth", "S", {48, 80, 9, 17}},
                     {"LblWest", "W", {8, 40, 17, 17}},
                     {"LblAngle", "Angle: North", {8, 96, 89, 17}}};
    for (const auto& [name, caption, place] : rows) {
        const auto* const label = compass.findChild<QLabel*>(QLatin1String(name));
        ASSERT_NE(label, nullptr) << name;
        EXPECT_EQ(label->text(), QLatin1String(caption));
        EXPECT_EQ(label->geometry(), place) << name;
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width()) << name;
    }
}

double GeneralX(double angle)
{
    return kCentreX + std::sin(angle * 3.14159 / 180.0) * kLength;
}

double GeneralY(double angle)
{
    return kCentreY - std::cos(angle * 3.14159 / 180.0) * kLength;
}

TEST_F(VBCompasTest, set_turnsPointerAndCaption)
{
    struct Row
    {
        double angle;
        double x2;
        double y2;
        const char* caption;
    };
    const auto general = [](double angle, const char* caption) {
        return Row{angle, GeneralX(angle), GeneralY(angle), caption};
    };
    const auto north = [](double angle) { return Row{angle, kCentreX, kCentreY - kLength, "Angle: North"}; };
    const auto east = [](double angle) { return Row{angle, kCentreX + kLength, kCentreY, "Angle: East"}; };
    const auto south = [](double angle) { return Row{angle, kCentreX, kCentreY + kLength, "Angle: South"}; };
    const auto west = [](double angle) { return Row{angle, kCentreX - kLength, kCentreY, "Angle: West"}; };
    const Row rows[]{north(0.0),
                     north(0.9),
                     north(360.0),
                     north(360.5),
                     east(90.0),
                     east(90.5),
                     east(90.999),
                     south(180.0),
                     south(180.7),
                     west(270.0),
                     west(270.3),
                     general(1.0, "Angle: 1"),
                     general(58.4, "Angle: 58.4"),
                     general(89.9, "Angle: 89.9"),
                     general(91.0, "Angle: 91"),
                     general(359.9, "Angle: 359.9"),
                     general(450.0, "Angle: 450"),
                     general(-0.5, "Angle: -0.5"),
                     general(12.3456789, "Angle: 12.3456789"),
                     general(32767.0, "Angle: 32767"),
                     general(-32768.0, "Angle: -32768")};
    for (const auto& [angle, x2, y2, caption] : rows) {
        SCOPED_TRACE(angle);
        compass.SetNewAngle(45.0);
        compass.SetNewAngle(angle);
        EXPECT_EQ(Caption(), QLatin1String(caption));
        EXPECT_EQ(compass.accessibleName(), QLatin1String(caption));
        EXPECT_EQ(compass.Pointer().X1, kCentreX);
        EXPECT_EQ(compass.Pointer().Y1, kCentreY);
        EXPECT_NEAR(compass.Pointer().X2, x2, kNearly);
        EXPECT_NEAR(compass.Pointer().Y2, y2, kNearly);
    }
}

// At the end of the range the cut pi and the full one differ by more than a pixel.
TEST_F(VBCompasTest, pi_isCutToSixDigits)
{
    compass.SetNewAngle(32000.0);
    EXPECT_NEAR(compass.Pointer().X2, GeneralX(32000.0), kNearly);
    const double exact = kCentreX + std::sin(32000.0 * std::acos(-1.0) / 180.0) * kLength;
    EXPECT_GT(std::abs(compass.Pointer().X2 - exact), 0.05);
}

// As in the times and dates of the window.
TEST_F(VBCompasTest, decimalSign_isThatOfTheUsersLocale_digitsAreLatin)
{
    region.locale = QLocale(QLocale::German, QLocale::Germany);
    compass.SetNewAngle(58.4);
    EXPECT_EQ(Caption(), u"Angle: 58,4");
    region.locale = QLocale(QLocale::Arabic, QLocale::Egypt);
    ASSERT_EQ(region.locale.toString(1), u"\u0661");
    compass.SetNewAngle(58.4);
    EXPECT_EQ(Caption(), u"Angle: 58\u066b4");
}

TEST_F(VBCompasTest, angleOutOfRange_leavesThePointer)
{
    compass.SetNewAngle(58.4);
    const VBCompas::Line before = compass.Pointer();
    using Limits = std::numeric_limits<double>;
    for (const double angle : {32768.0, -32768.5, 1e300, Limits::infinity(), Limits::quiet_NaN()}) {
        EXPECT_NO_THROW(compass.SetNewAngle(angle)) << angle;
        EXPECT_EQ(compass.Pointer().X2, before.X2) << angle;
        EXPECT_EQ(compass.Pointer().Y2, before.Y2) << angle;
        EXPECT_EQ(Caption(), QStringLiteral("Angle: 58.4")) << angle;
    }
}

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

TEST_F(VBCompasTest, newAngle_repaintsTheCard)
{
    compass.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&compass));
    PaintedRegion painted(compass);
    compass.SetNewAngle(90.0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return painted.region.contains(QPoint(82, 48)); }));
}

} // namespace
