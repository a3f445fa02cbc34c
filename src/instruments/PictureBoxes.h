// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>

#include <optional>

/// The target and the ten stored pictures of the sky at one scale, all of QImage::Format_RGB32.
struct PictureBoxes
{
    /// Size of the target in pixels at scale 1.
    static constexpr int kWidth = 273;
    static constexpr int kHeight = 125;

    /// The pictures of scale 1, named like the boxes, "PicSun.png"; a missing one stays null and is not
    /// drawn.
    [[nodiscard]] static PictureBoxes Load(const QString& folder);
    /// The pictures of the largest scale from 2 to @p scale for which @p folder holds all ten, named
    /// "PicSun@2x.png" at scale 2. Nothing if there is no such scale.
    [[nodiscard]] static std::optional<PictureBoxes> LoadLarger(const QString& folder, int scale);

    int scale = 1;
    /// Not initialised until it is cleared.
    QImage PicBox;
    QImage PicBackDay;
    QImage PicBackNight;
    QImage PicFrontDayMask;
    QImage PicFrontDay;
    QImage PicFrontNightMask;
    QImage PicFrontNight;
    QImage PicSunMask;
    QImage PicSun;
    QImage PicMoonMask;
    QImage PicMoon;
};
