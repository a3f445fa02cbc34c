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

/// The tip of the pointer in a direction that has no name.
QPointF Tip(double angle)
{
    const double radians = angle * 3.14159 / 180.0;
    return {kCentreX + std::sin(radians) * kLength, kCentreY - std::cos(radians) * kLength};
}

TEST_F(VBCompasTest, set_turnsPointerAndCaption)
{
    const auto expectPointer = [this](double angle, const QPointF& tip, const char* caption) {
        SCOPED_TRACE(angle);
        compass.SetNewAngle(45.0);
        compass.SetNewAngle(angle);
        EXPECT_EQ(Caption(), QLatin1String(caption));
        EXPECT_EQ(compass.accessibleName(), QLatin1String(caption));
        EXPECT_EQ(compass.Pointer().X1, kCentreX);
        EXPECT_EQ(compass.Pointer().Y1, kCentreY);
        EXPECT_NEAR(compass.Pointer().X2, tip.x(), kNearly);
        EXPECT_NEAR(compass.Pointer().Y2, tip.y(), kNearly);
    };
    for (const double angle : {0.0, 0.9, 360.0, 360.5}) {
        expectPointer(angle, {kCentreX, kCentreY - kLength}, "Angle: North");
    }
    for (const double angle : {90.0, 90.5, 90.999}) {
        expectPointer(angle, {kCentreX + kLength, kCentreY}, "Angle: East");
    }
    for (const double angle : {180.0, 180.7}) {
        expectPointer(angle, {kCentreX, kCentreY + kLength}, "Angle: South");
    }
    for (const double angle : {270.0, 270.3}) {
        expectPointer(angle, {kCentreX - kLength, kCentreY}, "Angle: West");
    }
    const std::pair<double, const char*> others[] = {
        {1.0, "Angle: 1"},         {58.4, "Angle: 58.4"},
        {89.9, "Angle: 89.9"},     {91.0, "Angle: 91"},
        {359.9, "Angle: 359.9"},   {450.0, "Angle: 450"},
        {-0.5, "Angle: -0.5"},     {12.3456789, "Angle: 12.3456789"},
        {32767.0, "Angle: 32767"}, {-32768.0, "Angle: -32768"}};
    for (const auto& [angle, caption] : others) {
        expectPointer(angle, Tip(angle), caption);
    }
}

// At the end of the range the cut pi and the full one differ by more than a pixel.
TEST_F(VBCompasTest, pi_isCutToSixDigits)
{
    compass.SetNewAngle(32000.0);
    EXPECT_NEAR(compass.Pointer().X2, Tip(32000.0).x(), kNearly);
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
