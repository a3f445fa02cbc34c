// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"
#include "instruments/VBCompas.h"
#include "instruments/VBSunAndMoon.h"

#include <QPalette>

#include <gtest/gtest.h>

#include <array>

// The stored pictures are under reference/. After an intended change, renew them with the environment
// variable DUSKBEACON_RENEW_REFERENCES set to 1 and look at each before you commit it.

namespace {

struct SkyRow
{
    const char* name;
    std::int16_t sun;
    std::int16_t moon;
    std::int16_t minute;
};

constexpr std::int16_t kSunrise = 390;
constexpr std::int16_t kSunset = 1122;
constexpr std::array kSkies{
    SkyRow{"sunrise", 0, -300, kSunrise},
    SkyRow{"noon", 620, -300, 756},
    SkyRow{"sunset", 0, -200, kSunset},
    SkyRow{"a_minute_after", -3, -200, kSunset + 1},
    SkyRow{"midnight", -600, 520, 0},
    SkyRow{"moon_by_day", 350, 600, 600},
    SkyRow{"moon_below_the_horizon", -400, -100, 1300},
};
constexpr std::array kAngles{0, 30, 60, 90, 120, 150, 180, 210, 240, 270, 300, 330};

QImage Sky(const SkyRow& row)
{
    FakePlatform platform;
    VBSunAndMoon sky(platform.files, QStringLiteral(":/pictures"), nullptr);
    sky.Setup(kSunrise, kSunset);
    sky.Update(row.sun, row.moon, row.minute);
    return sky.grab(QRect(0, 0, 273, 125)).toImage().convertToFormat(QImage::Format_RGB32);
}

QImage Compass(int angle)
{
    const FakeRegion region;
    VBCompas compass(region, nullptr);
    QPalette colours(QColor(0xf5, 0xf2, 0xec));
    colours.setColor(QPalette::WindowText, Qt::black);
    compass.setPalette(colours);
    compass.SetNewAngle(angle);
    return compass.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// Letters and lines differ from system to system.
QString Path(const QString& name)
{
    const QString folder =
        name.startsWith(u"compass") ? QStringLiteral(COMPASS_FOLDER) : QStringLiteral(REFERENCE_FOLDER);
    return folder + u'/' + name + QStringLiteral(".png");
}

/// The stored picture; renewed first if the variable is set.
QImage Stored(const QString& name, const QImage& drawn)
{
    if (qEnvironmentVariableIntValue("DUSKBEACON_RENEW_REFERENCES") != 0) {
        drawn.save(Path(name));
    }
    return QImage(Path(name)).convertToFormat(QImage::Format_RGB32);
}

/// The number of pixels that differ by more than another version of the font renderer may change an edge.
int DifferentPixels(const QImage& left, const QImage& right)
{
    constexpr int kSoftEdge = 48;
    const auto differs = [](QRgb a, QRgb b) {
        return qAbs(qRed(a) - qRed(b)) > kSoftEdge || qAbs(qGreen(a) - qGreen(b)) > kSoftEdge ||
               qAbs(qBlue(a) - qBlue(b)) > kSoftEdge;
    };
    int count = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            count += differs(left.pixel(x, y), right.pixel(x, y)) ? 1 : 0;
        }
    }
    return count;
}

TEST(ReferencePictures, skies_equalTheStoredOnes)
{
    for (const SkyRow& row : kSkies) {
        const QImage drawn = Sky(row);
        // There are neither lines nor texts here, so that each pixel is the same on every system.
        EXPECT_EQ(drawn, Stored(QStringLiteral("sky_") + QLatin1String(row.name), drawn)) << row.name;
    }
}

// Tolerates another version of the font renderer, but not a pointer five degrees off.
TEST(ReferencePictures, compasses_equalTheStoredOnes)
{
    constexpr int kTolerance = 12;
    for (const int angle : kAngles) {
        const QImage drawn = Compass(angle);
        const QImage stored = Stored(QStringLiteral("compass_%1").arg(angle), drawn);
        ASSERT_EQ(drawn.size(), stored.size()) << angle;
        EXPECT_LE(DifferentPixels(drawn, stored), kTolerance) << angle;
        EXPECT_GT(DifferentPixels(drawn, Compass(angle + 5)), kTolerance) << angle;
    }
}

} // namespace
