// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/VBSunAndMoon.h"

#include "fakes/FakePlatform.h"
#include "instruments/PlainPictures.h"

#include <QLabel>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// With these one minute is one pixel: the column of the sun's centre is the minute.
constexpr std::int16_t kPixelSunrise = 0;
constexpr std::int16_t kPixelSunset = 273;
constexpr std::int16_t kBelow = -500;

class VBSunAndMoonTest : public testing::Test
{
protected:
    /// The pixels of the scene as the window shows them.
    [[nodiscard]] static QImage SceneOf(VBSunAndMoon& shown)
    {
        return shown.grab(QRect(0, 0, 273, 125)).toImage().convertToFormat(QImage::Format_RGB32);
    }
    [[nodiscard]] QImage Scene() { return SceneOf(sky); }
    [[nodiscard]] QRect Sun() { return BoundsOf(Scene(), PlainPictures::kSun); }
    [[nodiscard]] QRect Moon() { return BoundsOf(Scene(), PlainPictures::kMoon); }

    FakePlatform platform;
    PlainPictures pictures;
    VBSunAndMoon sky{platform.files, pictures.Folder(), nullptr};
};

/// The same without a landscape in front, so that nothing hides the lower rows.
class VBSunAndMoonOpen : public VBSunAndMoonTest
{
protected:
    VBSunAndMoonOpen() { open.Setup(kPixelSunrise, kPixelSunset); }
    [[nodiscard]] QString BareFolder() const
    {
        for (const char* name : {"PicFrontDay", "PicFrontNight"}) {
            const QString picture = QLatin1String(name);
            pictures.Save(picture, PlainPictures::Plain(273, 125, 1, 0xff000000));
            pictures.Save(picture + QStringLiteral("Mask"), PlainPictures::Plain(273, 125, 1, 0xffffffff));
        }
        return pictures.Folder();
    }
    [[nodiscard]] QRect Bounds(QRgb colour) { return BoundsOf(SceneOf(open), colour); }

    VBSunAndMoon open{platform.files, BareFolder(), nullptr};
};

TEST_F(VBSunAndMoonTest, creation_showsTheDayWithoutSunAndMoon)
{
    const QImage scene = Scene();
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kDay), QRect(0, 0, 273, 95));
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kDayLand), QRect(0, 95, 273, 30));
    EXPECT_TRUE(Sun().isNull());
    EXPECT_TRUE(Moon().isNull());
    EXPECT_EQ(sky.size(), QSize(273, 129));
    EXPECT_EQ(sky.accessibleName(), u"Sky");
    const auto* const note = sky.findChild<QLabel*>(QStringLiteral("Label1"));
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->text(), u"These are the images being used.. ");
    EXPECT_TRUE(note->isHidden());
}

TEST_F(VBSunAndMoonTest, update_choosesSkyAndLandscape)
{
    struct Row
    {
        const char* name;
        std::int16_t sunrise;
        std::int16_t sunset;
        std::int16_t minute;
        bool isDay;
    };
    constexpr Row kRows[]{{"before sunrise", 390, 1122, 389, false},
                          {"sunrise", 390, 1122, 390, true},
                          {"noon", 390, 1122, 750, true},
                          {"sunset", 390, 1122, 1122, true},
                          {"after sunset", 390, 1122, 1123, false},
                          {"midnight", 390, 1122, 0, false},
                          {"equal at that minute", 600, 600, 600, true},
                          {"equal at another", 600, 600, 601, false},
                          {"sunset before sunrise", 1122, 390, 750, false}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        sky.Setup(row.sunrise, row.sunset);
        sky.Update(kBelow, -123, row.minute);
        const QImage scene = Scene();
        EXPECT_EQ(scene.pixel(0, 0), row.isDay ? PlainPictures::kDay : PlainPictures::kNight);
        EXPECT_EQ(scene.pixel(0, 124), row.isDay ? PlainPictures::kDayLand : PlainPictures::kNightLand);
        EXPECT_EQ(sky.accessibleName(),
                  QStringLiteral("Sky: %1, sun -50 degrees, moon -12 degrees")
                      .arg(row.isDay ? QStringLiteral("day") : QStringLiteral("night")));
    }
}

struct DiscRow
{
    const char* name;
    std::int16_t elevation;
    std::int16_t minute;
    QRect visible;
};

TEST_F(VBSunAndMoonOpen, update_drawsTheSunByTimeAndElevation)
{
    // 32 by 33 pixels around the centre, 16 of them left of it and 16 above.
    const DiscRow rows[]{{"sunrise half outside", 450, 0, {0, 46, 16, 33}},
                         {"middle", 450, 136, {120, 46, 32, 33}},
                         {"sunset half outside", 450, 273, {257, 46, 16, 33}},
                         {"one minute after sunset", 450, 274, {258, 46, 15, 33}},
                         {"far after sunset", 450, 300, {}},
                         {"on the horizon", 0, 136, {120, 109, 32, 16}},
                         {"highest", 900, 136, {120, 0, 32, 17}},
                         {"half goes down to even", 18, 136, {120, 106, 32, 19}},
                         {"half goes up to even", 54, 136, {120, 102, 32, 23}},
                         {"below", -144, 136, {}},
                         {"last row below", -108, 136, {120, 124, 32, 1}},
                         {"far above", 2000, 136, {}}};
    for (const DiscRow& row : rows) {
        open.Update(row.elevation, kBelow, row.minute);
        EXPECT_EQ(Bounds(PlainPictures::kSun), row.visible) << row.name;
    }
}

TEST_F(VBSunAndMoonOpen, sun_halfColumnGoesToTheEvenNeighbour)
{
    open.Setup(0, 600);
    open.Update(450, kBelow, 100); // 45.5
    EXPECT_EQ(Bounds(PlainPictures::kSun).left(), 46 - 16);
    open.Update(450, kBelow, 300); // 136.5
    EXPECT_EQ(Bounds(PlainPictures::kSun).left(), 136 - 16);
}

TEST_F(VBSunAndMoonOpen, update_drawsTheMoonByElevationOnly)
{
    // The left edge stands at 106 at any time; fractions of a row are rounded down, not to the nearest.
    const DiscRow rows[]{{"by day", 450, 136, {106, 46, 31, 32}},
                         {"at sunrise", 450, 0, {106, 46, 31, 32}},
                         {"by night", 450, 1000, {106, 46, 31, 32}},
                         {"on the horizon", 0, 136, {106, 109, 31, 16}},
                         {"highest", 900, 136, {106, 0, 31, 16}},
                         {"half goes down", 54, 136, {106, 101, 31, 24}},
                         {"fraction goes down", 1, 136, {106, 108, 31, 17}},
                         {"above the top", 1000, 136, {106, 0, 31, 2}},
                         {"below", -300, 136, {}}};
    for (const DiscRow& row : rows) {
        open.Update(kBelow, row.elevation, row.minute);
        EXPECT_EQ(Bounds(PlainPictures::kMoon), row.visible) << row.name;
    }
}

TEST_F(VBSunAndMoonTest, layers_moonCoversSunAndLandscapeCoversBoth)
{
    sky.Setup(kPixelSunrise, kPixelSunset);
    // Sun 105 to 136 and moon 106 to 136, rows 70 to 102 and 70 to 101; the landscape begins in row 95.
    sky.Update(280, 280, 121);
    const QImage scene = Scene();
    EXPECT_EQ(scene.pixel(105, 80), PlainPictures::kSun);
    EXPECT_EQ(scene.pixel(106, 80), PlainPictures::kMoon);
    EXPECT_EQ(scene.pixel(120, 94), PlainPictures::kMoon);
    EXPECT_EQ(scene.pixel(120, 95), PlainPictures::kDayLand);
    EXPECT_EQ(scene.pixel(104, 80), PlainPictures::kDay);
    sky.Update(-1, -1, 136);
    EXPECT_TRUE(Sun().isNull());
    EXPECT_TRUE(Moon().isNull());
}

TEST_F(VBSunAndMoonTest, mask_letsTheSkyThroughAroundTheDisc)
{
    QImage mask = PlainPictures::Plain(32, 33, 1, 0xffffffff);
    QImage sun = PlainPictures::Plain(32, 33, 1, 0xff000000);
    for (int y = 10; y < 20; ++y) {
        for (int x = 8; x < 24; ++x) {
            mask.setPixel(x, y, 0xff000000);
            sun.setPixel(x, y, PlainPictures::kSun);
        }
    }
    pictures.Save(QStringLiteral("PicSunMask"), mask);
    pictures.Save(QStringLiteral("PicSun"), sun);
    VBSunAndMoon masked(platform.files, pictures.Folder(), nullptr);
    masked.Setup(kPixelSunrise, kPixelSunset);
    masked.Update(450, kBelow, 100);
    const QImage scene = masked.grab().toImage();
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kSun), QRect(84 + 8, 46 + 10, 16, 10));
    EXPECT_EQ(scene.pixel(85, 47), PlainPictures::kDay);
}

TEST_F(VBSunAndMoonTest, equalSunriseAndSunset_leaveOutTheSunOnly)
{
    sky.Setup(600, 600);
    EXPECT_NO_THROW(sky.Update(450, 450, 600));
    EXPECT_TRUE(Sun().isNull());
    EXPECT_EQ(Moon(), QRect(106, 46, 31, 32));
    EXPECT_EQ(Scene().pixel(0, 124), PlainPictures::kDayLand);
}

TEST_F(VBSunAndMoonTest, beforeSetup_bothAreZeroAndTheSunIsLeftOut)
{
    EXPECT_NO_THROW(sky.Update(450, kBelow, 0));
    EXPECT_TRUE(Sun().isNull());
    EXPECT_EQ(Scene().pixel(0, 0), PlainPictures::kDay);
    sky.Update(450, kBelow, 1);
    EXPECT_EQ(Scene().pixel(0, 0), PlainPictures::kNight);
}

TEST_F(VBSunAndMoonTest, overflow_leavesTheSunOutQuietly)
{
    struct Row
    {
        const char* name;
        std::int16_t sunrise;
        std::int16_t sunset;
        std::int16_t minute;
    };
    for (const Row& row : {Row{"column", 600, 601, 1439}, Row{"left edge", 0, 1, -120},
                           Row{"elapsed", -32768, 100, 1439}, Row{"length of the day", -32768, 32767, 0}}) {
        SCOPED_TRACE(row.name);
        sky.Setup(row.sunrise, row.sunset);
        EXPECT_NO_THROW(sky.Update(450, 450, row.minute));
        EXPECT_TRUE(Sun().isNull());
        EXPECT_FALSE(Moon().isNull());
        EXPECT_NE(Scene().pixel(0, 124), PlainPictures::kDay);
    }
    sky.Setup(kPixelSunrise, kPixelSunset);
    sky.Update(450, kBelow, 100);
    EXPECT_EQ(Sun(), QRect(84, 46, 32, 33)) << "drawn again by the next update";
    EXPECT_TRUE(Moon().isNull()) << "the old scene is gone";
}

TEST_F(VBSunAndMoonTest, drawSunAndDrawMoon_addToTheScene)
{
    sky.Setup(kPixelSunrise, kPixelSunset);
    sky.DrawSun(450, 50);
    sky.DrawMoon(700, 50);
    EXPECT_EQ(Sun().left(), 34);
    EXPECT_EQ(Moon().left(), 106);
}

TEST_F(VBSunAndMoonTest, repaint_showsTheComposedSceneAgain)
{
    sky.Setup(kPixelSunrise, kPixelSunset);
    sky.Update(450, 700, 50);
    const QImage before = Scene();
    sky.show();
    sky.hide();
    sky.show();
    sky.repaint();
    EXPECT_EQ(Scene(), before);
    EXPECT_TRUE(sky.findChildren<QTimer*>().isEmpty());
}

TEST_F(VBSunAndMoonTest, saveImage_writesA24BitBitmapOfTheScene)
{
    sky.Setup(kPixelSunrise, kPixelSunset);
    sky.Update(450, 700, 50);
    sky.SaveImage(QStringLiteral("sky.bmp"));
    const std::optional<QByteArray> content = platform.files.Read(QStringLiteral("sky.bmp"), 1000000);
    ASSERT_TRUE(content.has_value());
    EXPECT_TRUE(content->startsWith("BM"));
    EXPECT_EQ(content->at(28), 24) << "bits of a pixel";
    EXPECT_EQ(QImage::fromData(*content).convertToFormat(QImage::Format_RGB32), Scene());
}

TEST_F(VBSunAndMoonTest, saveImage_impossibleFileEndsQuietly)
{
    const QImage before = Scene();
    EXPECT_NO_THROW(sky.SaveImage(QStringLiteral("no/such/folder/sky.bmp")));
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("no/such/folder/sky.bmp")));
    EXPECT_EQ(Scene(), before);
}

TEST_F(VBSunAndMoonTest, missingPictures_leaveTheirLayerOut)
{
    for (const char* name : {"PicFrontDay", "PicFrontDayMask", "PicSun", "PicSunMask"}) {
        QFile::remove(pictures.Path(QLatin1String(name)));
    }
    VBSunAndMoon partial(platform.files, pictures.Folder(), nullptr);
    partial.Setup(kPixelSunrise, kPixelSunset);
    EXPECT_NO_THROW(partial.Update(450, 450, 100));
    const QImage scene = partial.grab().toImage();
    EXPECT_EQ(scene.pixel(0, 124), PlainPictures::kDay);
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kMoon).left(), 106);
}

// The sky covers the whole picture; without a sky only the clearing removes the old scene.
TEST_F(VBSunAndMoonTest, withoutASky_pictureIsClearedBeforeEachScene)
{
    for (const char* name : {"PicBackDay", "PicBackNight"}) {
        QFile::remove(pictures.Path(QLatin1String(name)));
    }
    VBSunAndMoon bare(platform.files, pictures.Folder(), nullptr);
    EXPECT_EQ(BoundsOf(SceneOf(bare), 0xffffffff), QRect(0, 0, 273, 95));
    bare.Setup(kPixelSunrise, kPixelSunset);
    bare.Update(450, kBelow, 50);
    bare.Update(450, kBelow, 200);
    EXPECT_EQ(BoundsOf(SceneOf(bare), PlainPictures::kSun), QRect(184, 46, 32, 33));
}

} // namespace
