// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

constexpr std::array kScales{1, 2, 3};
constexpr QRgb kBlack = 0xff000000;
constexpr QRgb kWhite = 0xffffffff;

QString ResourcePath(const std::string& name, int scale)
{
    const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
    return QStringLiteral(":/pictures/") + QString::fromStdString(name) + suffix + QStringLiteral(".png");
}

QImage Load(const std::string& name, int scale)
{
    return QImage(ResourcePath(name, scale)).convertToFormat(QImage::Format_RGB32);
}

double Brightness(QRgb colour)
{
    return 0.299 * qRed(colour) + 0.587 * qGreen(colour) + 0.114 * qBlue(colour);
}

double MeanBrightnessOfRow(const QImage& image, int y)
{
    double sum = 0;
    for (int x = 0; x < image.width(); ++x) {
        sum += Brightness(image.pixel(x, y));
    }
    return sum / image.width();
}

bool RowIsOnly(const QImage& image, int y, QRgb colour)
{
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixel(x, y) != colour) {
            return false;
        }
    }
    return true;
}

double ShareOf(const QImage& image, QRgb colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, y) == colour ? 1 : 0;
        }
    }
    return static_cast<double>(count) / (image.width() * image.height());
}

/// Red, green and blue, averaged over the pixels that the mask leaves to the sprite.
std::array<double, 3> MeanInside(const QImage& picture, const QImage& mask)
{
    std::array<double, 3> sum{};
    int count = 0;
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            if (mask.pixel(x, y) == kBlack) {
                const QRgb colour = picture.pixel(x, y);
                sum[0] += qRed(colour);
                sum[1] += qGreen(colour);
                sum[2] += qBlue(colour);
                ++count;
            }
        }
    }
    for (double& channel : sum) {
        channel /= count;
    }
    return sum;
}

TEST(ShippedPicture, fromResource_hasSizeAnd24Bits)
{
    const std::pair<const char*, QSize> rows[]{
        {"PicBackDay", {273, 125}},    {"PicBackNight", {273, 125}},
        {"PicFrontDay", {273, 125}},   {"PicFrontDayMask", {273, 125}},
        {"PicFrontNight", {273, 125}}, {"PicFrontNightMask", {273, 125}},
        {"PicSun", {32, 33}},          {"PicSunMask", {32, 33}},
        {"PicMoon", {31, 32}},         {"PicMoonMask", {31, 32}},
        {"Picture2", {129, 89}}};
    for (const auto& [name, size] : rows) {
        for (const int scale : kScales) {
            SCOPED_TRACE(testing::Message() << name << " at " << scale);
            QFile file(ResourcePath(name, scale));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray content = file.readAll();
            // In the header of a PNG file the depth of a channel stands at 24, the kind of colour at 25: 2 is
            // without alpha.
            ASSERT_GT(content.size(), 26);
            EXPECT_EQ(content.at(24), 8);
            EXPECT_EQ(content.at(25), 2);
            EXPECT_EQ(QImage::fromData(content).size(), size * scale);
        }
    }
}

class ShippedScene : public testing::TestWithParam<int>
{
protected:
    [[nodiscard]] static QImage At(const std::string& name) { return Load(name, GetParam()); }
};

TEST_P(ShippedScene, masks_areBlackAndWhite_andPicturesBlackWhereTheyAreWhite)
{
    for (const std::string name : {"PicFrontDay", "PicFrontNight", "PicSun", "PicMoon"}) {
        SCOPED_TRACE(name);
        const QImage mask = At(name + "Mask");
        const QImage picture = At(name);
        ASSERT_FALSE(mask.isNull());
        ASSERT_EQ(mask.size(), picture.size());
        const double black = ShareOf(mask, kBlack);
        const double white = ShareOf(mask, kWhite);
        EXPECT_GT(black, 0.0);
        EXPECT_GT(white, 0.0);
        EXPECT_DOUBLE_EQ(black + white, 1.0);
        EXPECT_NEAR(black, ShareOf(Load(name + "Mask", 1), kBlack), 0.03) << "the share at each scale";
        int strays = 0;
        for (int y = 0; y < mask.height(); ++y) {
            for (int x = 0; x < mask.width(); ++x) {
                strays += mask.pixel(x, y) == kWhite && picture.pixel(x, y) != kBlack ? 1 : 0;
            }
        }
        EXPECT_EQ(strays, 0);
    }
}

// A sun or moon that has set is drawn from row 109 on: only the landscape covers it there.
TEST_P(ShippedScene, landscape_fillsAboutTheLowestQuarter_andAllBelowTheHorizon)
{
    constexpr int kHighestRowBelowTheHorizon = 125 - 16;
    for (const char* name : {"PicFrontDayMask", "PicFrontNightMask"}) {
        const QImage mask = At(name);
        ASSERT_EQ(mask.height(), 125 * GetParam());
        EXPECT_NEAR(ShareOf(mask, kBlack), 0.25, 0.05) << name;
        EXPECT_TRUE(RowIsOnly(mask, mask.height() / 2, kWhite)) << name;
        for (int y = kHighestRowBelowTheHorizon * GetParam(); y < mask.height(); ++y) {
            EXPECT_TRUE(RowIsOnly(mask, y, kBlack)) << name << ' ' << y;
        }
    }
}

TEST_P(ShippedScene, daySky_isWhiteWhereLandscapeCoversWholeRows)
{
    const QImage sky = At("PicBackDay");
    const QImage mask = At("PicFrontDayMask");
    int covered = 0;
    int white = 0;
    for (int y = 0; y < mask.height(); ++y) {
        covered += RowIsOnly(mask, y, kBlack) ? 1 : 0;
        white += RowIsOnly(sky, y, kWhite) ? 1 : 0;
    }
    EXPECT_GT(white, 0);
    EXPECT_NEAR(white, covered, 3 * GetParam());
    EXPECT_TRUE(RowIsOnly(sky, sky.height() - 1, kWhite));
}

TEST_P(ShippedScene, daySky_turnsFromBlueToWhiteWithoutAStep)
{
    const QImage sky = At("PicBackDay");
    ASSERT_FALSE(sky.isNull());
    const QRgb top = sky.pixel(0, 0);
    EXPECT_GT(qBlue(top), qGreen(top));
    EXPECT_GT(qGreen(top), qRed(top));
    for (int y = 1; y < sky.height(); ++y) {
        const double step = MeanBrightnessOfRow(sky, y) - MeanBrightnessOfRow(sky, y - 1);
        EXPECT_GE(step, 0.0) << y;
        EXPECT_LT(step, 4.0) << y;
    }
}

TEST_P(ShippedScene, nightSky_isDarkerThanDayInEachRow)
{
    const QImage day = At("PicBackDay");
    const QImage night = At("PicBackNight");
    ASSERT_EQ(day.size(), night.size());
    ASSERT_FALSE(day.isNull());
    for (int y = 0; y < day.height(); ++y) {
        EXPECT_LT(MeanBrightnessOfRow(night, y), MeanBrightnessOfRow(day, y) / 2) << y;
    }
}

TEST_P(ShippedScene, nightLandscape_isVeryDark)
{
    const auto [red, green, blue] = MeanInside(At("PicFrontNight"), At("PicFrontNightMask"));
    EXPECT_LT(red, 25);
    EXPECT_LT(green, 25);
    EXPECT_LT(blue, 40);
    const auto [dayRed, dayGreen, dayBlue] = MeanInside(At("PicFrontDay"), At("PicFrontDayMask"));
    EXPECT_GT(dayRed, 100);
    EXPECT_GT(dayGreen, 100);
    EXPECT_GT(dayBlue, 60);
}

TEST_P(ShippedScene, sun_isAYellowDisc)
{
    const QImage mask = At("PicSunMask");
    ASSERT_FALSE(mask.isNull());
    const auto [red, green, blue] = MeanInside(At("PicSun"), mask);
    EXPECT_GT(red, 230);
    EXPECT_GT(green, 200);
    EXPECT_LT(blue, 150);
    EXPECT_NEAR(ShareOf(mask, kBlack), 0.71, 0.04);
}

TEST_P(ShippedScene, moon_isAGreyDiscWithSurface)
{
    const QImage mask = At("PicMoonMask");
    const QImage moon = At("PicMoon");
    ASSERT_FALSE(mask.isNull());
    const auto [red, green, blue] = MeanInside(moon, mask);
    EXPECT_NEAR(red, green, 8);
    EXPECT_NEAR(green, blue, 14);
    EXPECT_NEAR(ShareOf(mask, kBlack), 0.71, 0.04);
    const int scale = GetParam();
    const double plain = Brightness(moon.pixel(10 * scale, 11 * scale));
    const double upland = Brightness(moon.pixel(17 * scale, 18 * scale));
    EXPECT_GT(upland, plain + 30);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedScene, testing::ValuesIn(kScales),
                         [](const auto& row) { return "at" + std::to_string(row.param); });

} // namespace
