// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "instruments/ScaledScene.h"
#include "instruments/VBCompas.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Runs before the application object is made, which reads it.
const bool kIsScaled = qputenv("QT_SCALE_FACTOR", TEST_SCALE);

int Scaled(double length)
{
    return static_cast<int>(std::lround(length * QByteArray(TEST_SCALE).toDouble()));
}

TEST(ScaledSky, largerPictures_keepThePositions)
{
    ASSERT_TRUE(kIsScaled);
    FakePlatform platform;
    const PlainPictures pictures({1, 2});
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    const QImage scene = Scene(sky);
    EXPECT_EQ(scene.size(), QSize(Scaled(273), Scaled(129)));
    // One pixel of leeway for the rim of a resized picture.
    const QRect sun = BoundsOf(scene, PlainPictures::kSun);
    EXPECT_NEAR(sun.left(), Scaled(34), 1);
    EXPECT_NEAR(sun.top(), Scaled(46), 1);
    EXPECT_NEAR(sun.width(), Scaled(32), 2);
    EXPECT_NEAR(sun.height(), Scaled(33), 2);
    const QRect moon = BoundsOf(scene, PlainPictures::kMoon);
    EXPECT_NEAR(moon.left(), Scaled(106), 1);
    EXPECT_NEAR(moon.width(), Scaled(31), 2);
}

TEST(ScaledSky, largerPictures_areUsedWhereTheyExist)
{
    FakePlatform platform;
    const PlainPictures pictures({1, 2});
    pictures.Save(QStringLiteral("PicBackDay"), PlainPictures::Plain(273, 125, 2, 0xffff00ff), 2);
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    EXPECT_EQ(sky.grab().toImage().pixel(5, 5), 0xffff00ff) << "the first picture";
    EXPECT_EQ(Scene(sky).pixel(5, 5), 0xffff00ff);
}

TEST(ScaledSky, incompleteSet_fallsBackToTheSmallPictures)
{
    FakePlatform platform;
    const PlainPictures pictures({1, 2});
    QFile::remove(pictures.Path(QStringLiteral("PicMoonMask"), 2));
    pictures.Save(QStringLiteral("PicBackDay"), PlainPictures::Plain(273, 125, 2, 0xffff00ff), 2);
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    const QImage scene = Scene(sky);
    EXPECT_EQ(scene.pixel(5, 5), PlainPictures::kDay);
    EXPECT_NEAR(BoundsOf(scene, PlainPictures::kSun).left(), Scaled(34), 1);
}

TEST(ScaledSky, saveImage_staysAtScaleOne)
{
    FakePlatform platform;
    const PlainPictures pictures({1, 2});
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    sky.Setup(0, 273);
    sky.Update(450, 700, 50);
    sky.SaveImage(QStringLiteral("sky.bmp"));
    const QImage saved(QStringLiteral("sky.bmp"));
    EXPECT_EQ(saved.size(), QSize(273, 125));
    EXPECT_EQ(BoundsOf(saved.convertToFormat(QImage::Format_RGB32), PlainPictures::kSun),
              QRect(34, 46, 32, 33));
}

TEST(ScaledCompass, card_isDrawnAtThePixelsOfTheScreen)
{
    const FakeRegion region;
    VBCompas compass(region, nullptr);
    const QImage picture = compass.grab().toImage();
    ASSERT_EQ(picture.size(), QSize(Scaled(102), Scaled(117)));
    // A picture that was drawn small and enlarged does not change when it is halved and doubled.
    const QImage enlarged = picture.scaled(102, 117, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                                .scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    EXPECT_NE(picture.convertToFormat(QImage::Format_RGB32), enlarged.convertToFormat(QImage::Format_RGB32));
}

} // namespace
