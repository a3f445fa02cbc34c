// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "instruments/ScaledScene.h"

#include <gtest/gtest.h>

// Only for the program at scale 2: at a scale between two whole ones pixels are mixed.
namespace {

/// A sky of one-pixel columns, which would blur if drawn at another scale or resized.
QImage Stripes(int scale)
{
    QImage picture = PlainPictures::Plain(273, 125, scale, PlainPictures::kDay);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); x += 2) {
            picture.setPixel(x, y, 0xff000000);
        }
    }
    return picture;
}

TEST(ScaledSky, twiceTheScale_showsEachPixelOfThePicture)
{
    FakePlatform platform;
    const PlainPictures pictures({1, 2});
    pictures.Save(QStringLiteral("PicBackDay"), Stripes(2), 2);
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    const QImage scene = Scene(sky);
    EXPECT_EQ(scene.copy(0, 0, 20, 10), Stripes(2).copy(0, 0, 20, 10));
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kSun), QRect(68, 92, 64, 66));
}

} // namespace
