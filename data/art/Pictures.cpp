// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pictures.h"

#include "Banner.h"
#include "Canvas.h"
#include "Landscape.h"
#include "Sky.h"
#include "SunAndMoon.h"

#include <QPainter>

namespace art {

namespace {

/// The least share of landscape for which a pixel is cut out; the rest of the pixel is painted as sky.
constexpr double kLandscapeThreshold = 0.12;

Sprite Landscape(const QImage& sky, int scale, const LandscapeColours& colours)
{
    const QImage shape = Render(kScene, scale, [&](QPainter& painter) { DrawLandscape(painter, colours); });
    return CutOut(shape, sky, kLandscapeThreshold);
}

} // namespace

std::vector<Picture> PicturesAt(int scale)
{
    const QImage day = DaySky(scale);
    const QImage night = NightSky(scale);
    // The edge of the landscape is mixed with the gradient without stars, so that no star is cut in half.
    const QImage nightGradient = VerticalGradient(kScene, scale, kNightSky);
    const Sprite dayFront = Landscape(day, scale, kDayLandscape);
    const Sprite nightFront = Landscape(nightGradient, scale, kNightLandscape);
    const Sprite sun = Sun(scale);
    const Sprite moon = Moon(scale);
    return {
        {QStringLiteral("PicBackDay"), day},
        {QStringLiteral("PicBackNight"), night},
        {QStringLiteral("PicFrontDayMask"), dayFront.mask},
        {QStringLiteral("PicFrontDay"), dayFront.picture},
        {QStringLiteral("PicFrontNightMask"), nightFront.mask},
        {QStringLiteral("PicFrontNight"), nightFront.picture},
        {QStringLiteral("PicSunMask"), sun.mask},
        {QStringLiteral("PicSun"), sun.picture},
        {QStringLiteral("PicMoonMask"), moon.mask},
        {QStringLiteral("PicMoon"), moon.picture},
        {QStringLiteral("Picture2"), Banner(scale)},
    };
}

QString PictureFileName(const QString& name, int scale)
{
    const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
    return name + suffix + QStringLiteral(".png");
}

} // namespace art
