// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/VBSunAndMoon.h"

#include "fakes/FakePlatform.h"
#include "instruments/PlainPictures.h"

#include <QLabel>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// With these the sun's centre stands at the column that the clock says: one minute is one pixel.
constexpr std::int16_t kPixelSunrise = 0;
constexpr std::int16_t kPixelSunset = 273;
constexpr std::int16_t kBelow = -500;

class VBSunAndMoonTest : public testing::Test
{
protected:
    /// The pixels of the scene as the window shows them.
    [[nodiscard]] QImage Scene()
    {
        return sky.grab(QRect(0, 0, 273, 125)).toImage().convertToFormat(QImage::Format_RGB32);
    }
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
    VBSunAndMoonOpen()
        : m_bare(Bare())
        , open(platform.files, pictures.Folder(), nullptr)
    {
        open.Setup(kPixelSunrise, kPixelSunset);
    }
    [[nodiscard]] QRect Bounds(QRgb colour)
    {
        return BoundsOf(open.grab(QRect(0, 0, 273, 125)).toImage().convertToFormat(QImage::Format_RGB32),
                        colour);
    }

private:
    bool Bare() const
    {
        for (const char* name : {"PicFrontDay", "PicFrontNight"}) {
            const QString picture = QLatin1String(name);
            pictures.Save(picture, PlainPictures::Plain(273, 125, 1, 0xff000000));
            pictures.Save(picture + QStringLiteral("Mask"), PlainPictures::Plain(273, 125, 1, 0xffffffff));
        }
        return true;
    }
    bool m_bare;

protected:
    VBSunAndMoon open;
};

TEST_F(VBSunAndMoonTest, creation_showsTheDayWithoutSunAndMoon)
{
    const QImage scene = Scene();
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kDay), QRect(0, 0, 273, 95));
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kDayLand), QRect(0, 95, 273, 30));
    EXPECT_TRUE(Sun().isNull());
    EXPECT_TRUE(Moon().isNull());
    EXPECT_EQ(sky.size(), QSize(273, 129));
}

TEST_F(VBSunAndMoonTest, creation_keepsTheNoteOutOfSight)
{
    const auto* const label1 = sky.findChild<QLabel*>(QStringLiteral("Label1"));
    ASSERT_NE(label1, nullptr);
    EXPECT_EQ(label1->text(), QStringLiteral("These are the images being used.. "));
    EXPECT_TRUE(label1->isHidden());
}

struct DayRow
{
    const char* name;
    std::int16_t sunrise;
    std::int16_t sunset;
    std::int16_t minute;
    bool isDay;
};

class VBSunAndMoonDay : public testing::TestWithParam<DayRow>
{
};

TEST_P(VBSunAndMoonDay, update_choosesSkyAndLandscape)
{
    FakePlatform platform;
    const PlainPictures pictures;
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    const DayRow& row = GetParam();
    sky.Setup(row.sunrise, row.sunset);
    sky.Update(kBelow, kBelow, row.minute);
    const QImage scene = sky.grab().toImage();
    EXPECT_EQ(scene.pixel(0, 0), row.isDay ? PlainPictures::kDay : PlainPictures::kNight);
    EXPECT_EQ(scene.pixel(0, 124), row.isDay ? PlainPictures::kDayLand : PlainPictures::kNightLand);
    EXPECT_TRUE(sky.accessibleName().startsWith(row.isDay ? QStringLiteral("Sky: day, ")
                                                          : QStringLiteral("Sky: night, ")));
}

INSTANTIATE_TEST_SUITE_P(
    All, VBSunAndMoonDay,
    testing::Values(DayRow{"before_sunrise", 390, 1122, 389, false}, DayRow{"sunrise", 390, 1122, 390, true},
                    DayRow{"noon", 390, 1122, 750, true}, DayRow{"sunset", 390, 1122, 1122, true},
                    DayRow{"after_sunset", 390, 1122, 1123, false}, DayRow{"midnight", 390, 1122, 0, false},
                    DayRow{"equal_at_that_minute", 600, 600, 600, true},
                    DayRow{"equal_at_another", 600, 600, 601, false},
                    DayRow{"sunset_before_sunrise", 1122, 390, 750, false}),
    [](const auto& row) { return row.param.name; });

struct DiscRow
{
    const char* name;
    std::int16_t elevation;
    std::int16_t minute;
    QRect visible;
};

void PrintTo(const DiscRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class VBSunAndMoonSun : public VBSunAndMoonOpen, public testing::WithParamInterface<DiscRow>
{
};

TEST_P(VBSunAndMoonSun, update_drawsItByTimeAndElevation)
{
    const DiscRow& row = GetParam();
    open.Update(row.elevation, kBelow, row.minute);
    EXPECT_EQ(Bounds(PlainPictures::kSun), row.visible);
}

// 32 by 33 pixels around the centre, 16 of them left of it and 16 above.
INSTANTIATE_TEST_SUITE_P(All, VBSunAndMoonSun,
                         testing::Values(DiscRow{"sunrise_half_outside", 450, 0, {0, 46, 16, 33}},
                                         DiscRow{"middle", 450, 136, {120, 46, 32, 33}},
                                         DiscRow{"sunset_half_outside", 450, 273, {257, 46, 16, 33}},
                                         DiscRow{"one_minute_after_sunset", 450, 274, {258, 46, 15, 33}},
                                         DiscRow{"far_after_sunset", 450, 300, {}},
                                         DiscRow{"on_the_horizon", 0, 136, {120, 109, 32, 16}},
                                         DiscRow{"highest", 900, 136, {120, 0, 32, 17}},
                                         DiscRow{"half_goes_down_to_even", 18, 136, {120, 106, 32, 19}},
                                         DiscRow{"half_goes_up_to_even", 54, 136, {120, 102, 32, 23}},
                                         DiscRow{"below", -144, 136, {}},
                                         DiscRow{"last_row_below", -108, 136, {120, 124, 32, 1}},
                                         DiscRow{"far_above", 2000, 136, {}}),
                         [](const auto& row) { return row.param.name; });

TEST_F(VBSunAndMoonOpen, sun_halfColumnGoesToTheEvenNeighbour)
{
    open.Setup(0, 600);
    open.Update(450, kBelow, 100); // 45.5
    EXPECT_EQ(Bounds(PlainPictures::kSun).left(), 46 - 16);
    open.Update(450, kBelow, 300); // 136.5
    EXPECT_EQ(Bounds(PlainPictures::kSun).left(), 136 - 16);
}

class VBSunAndMoonMoon : public VBSunAndMoonOpen, public testing::WithParamInterface<DiscRow>
{
};

TEST_P(VBSunAndMoonMoon, update_drawsItByElevationOnly)
{
    const DiscRow& row = GetParam();
    open.Update(kBelow, row.elevation, row.minute);
    EXPECT_EQ(Bounds(PlainPictures::kMoon), row.visible);
}

// The left edge stands at 106 at any time; fractions of a row are rounded down, not to the nearest.
INSTANTIATE_TEST_SUITE_P(All, VBSunAndMoonMoon,
                         testing::Values(DiscRow{"by_day", 450, 136, {106, 46, 31, 32}},
                                         DiscRow{"at_sunrise", 450, 0, {106, 46, 31, 32}},
                                         DiscRow{"by_night", 450, 1000, {106, 46, 31, 32}},
                                         DiscRow{"on_the_horizon", 0, 136, {106, 109, 31, 16}},
                                         DiscRow{"highest", 900, 136, {106, 0, 31, 16}},
                                         DiscRow{"half_goes_down", 54, 136, {106, 101, 31, 24}},
                                         DiscRow{"fraction_goes_down", 1, 136, {106, 108, 31, 17}},
                                         DiscRow{"above_the_top", 1000, 136, {106, 0, 31, 2}},
                                         DiscRow{"below", -300, 136, {}}),
                         [](const auto& row) { return row.param.name; });

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
}

TEST_F(VBSunAndMoonTest, negativeElevations_hideBothBehindTheLandscape)
{
    sky.Setup(kPixelSunrise, kPixelSunset);
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

TEST_F(VBSunAndMoonTest, update_leavesNothingOfTheOneBefore)
{
    sky.Setup(kPixelSunrise, kPixelSunset);
    sky.Update(450, 700, 50);
    sky.Update(450, kBelow, 200);
    EXPECT_EQ(Sun(), QRect(184, 46, 32, 33));
    EXPECT_TRUE(Moon().isNull());
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

TEST_F(VBSunAndMoonTest, updateAfterAFailedOne_showsTheSunAgain)
{
    sky.Setup(0, 0);
    sky.Update(450, kBelow, 100);
    sky.Setup(kPixelSunrise, kPixelSunset);
    sky.Update(450, kBelow, 100);
    EXPECT_EQ(Sun(), QRect(84, 46, 32, 33));
}

struct OverflowRow
{
    const char* name;
    std::int16_t sunrise;
    std::int16_t sunset;
    std::int16_t minute;
};

class VBSunAndMoonOverflow : public testing::TestWithParam<OverflowRow>
{
};

TEST_P(VBSunAndMoonOverflow, sun_isLeftOutQuietly)
{
    FakePlatform platform;
    const PlainPictures pictures;
    VBSunAndMoon sky(platform.files, pictures.Folder(), nullptr);
    const OverflowRow& row = GetParam();
    sky.Setup(row.sunrise, row.sunset);
    EXPECT_NO_THROW(sky.Update(450, 450, row.minute));
    const QImage scene = sky.grab().toImage();
    EXPECT_TRUE(BoundsOf(scene, PlainPictures::kSun).isNull());
    EXPECT_FALSE(BoundsOf(scene, PlainPictures::kMoon).isNull());
    EXPECT_NE(scene.pixel(0, 124), PlainPictures::kDay);
}

INSTANTIATE_TEST_SUITE_P(All, VBSunAndMoonOverflow,
                         testing::Values(OverflowRow{"column", 600, 601, 1439},
                                         OverflowRow{"left_edge", 0, 1, -120},
                                         OverflowRow{"elapsed", -32768, 100, 1439},
                                         OverflowRow{"length_of_the_day", -32768, 32767, 0}),
                         [](const auto& row) { return row.param.name; });

TEST_F(VBSunAndMoonTest, drawSunAndDrawMoon_addToTheSceneThatStands)
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
    QFile::remove(pictures.Path(QStringLiteral("PicFrontDay")));
    QFile::remove(pictures.Path(QStringLiteral("PicFrontDayMask")));
    QFile::remove(pictures.Path(QStringLiteral("PicSun")));
    QFile::remove(pictures.Path(QStringLiteral("PicSunMask")));
    VBSunAndMoon partial(platform.files, pictures.Folder(), nullptr);
    partial.Setup(kPixelSunrise, kPixelSunset);
    EXPECT_NO_THROW(partial.Update(450, 450, 100));
    const QImage scene = partial.grab().toImage();
    EXPECT_EQ(scene.pixel(0, 124), PlainPictures::kDay);
    EXPECT_EQ(BoundsOf(scene, PlainPictures::kMoon).left(), 106);
}

// The sky covers the whole picture; without one only the clearing takes away what stood there.
TEST_F(VBSunAndMoonTest, withoutASky_pictureIsClearedBeforeEachScene)
{
    for (const char* name : {"PicBackDay", "PicBackNight"}) {
        QFile::remove(pictures.Path(QLatin1String(name)));
    }
    VBSunAndMoon bare(platform.files, pictures.Folder(), nullptr);
    const auto scene = [&] { return bare.grab(QRect(0, 0, 273, 125)).toImage(); };
    EXPECT_EQ(BoundsOf(scene(), 0xffffffff), QRect(0, 0, 273, 95));
    bare.Setup(kPixelSunrise, kPixelSunset);
    bare.Update(450, kBelow, 50);
    bare.Update(450, kBelow, 200);
    EXPECT_EQ(BoundsOf(scene(), PlainPictures::kSun), QRect(184, 46, 32, 33));
}

TEST_F(VBSunAndMoonTest, accessibleName_tellsTheScene)
{
    EXPECT_EQ(sky.accessibleName(), QStringLiteral("Sky"));
    sky.Setup(390, 1122);
    sky.Update(450, -123, 750);
    EXPECT_EQ(sky.accessibleName(), QStringLiteral("Sky: day, sun 45 degrees, moon -12 degrees"));
}

} // namespace
