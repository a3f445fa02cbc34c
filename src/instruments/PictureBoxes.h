// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>

/// The target of the sky and its ten stored pictures at one scale, all of QImage::Format_RGB32. A stored
/// picture is read each time it is drawn: at most seven, once in 300 seconds, while all of them would take
/// 0.9 MB at scale 1 and 8 MB at scale 3.
class PictureBoxes final
{
public:
    /// Size of the target in pixels at scale 1.
    static constexpr int kWidth = 273;
    static constexpr int kHeight = 125;

    static constexpr QLatin1String PicBackDay{"PicBackDay"};
    static constexpr QLatin1String PicBackNight{"PicBackNight"};
    static constexpr QLatin1String PicFrontDayMask{"PicFrontDayMask"};
    static constexpr QLatin1String PicFrontDay{"PicFrontDay"};
    static constexpr QLatin1String PicFrontNightMask{"PicFrontNightMask"};
    static constexpr QLatin1String PicFrontNight{"PicFrontNight"};
    static constexpr QLatin1String PicSunMask{"PicSunMask"};
    static constexpr QLatin1String PicSun{"PicSun"};
    static constexpr QLatin1String PicMoonMask{"PicMoonMask"};
    static constexpr QLatin1String PicMoon{"PicMoon"};

    /// The largest scale from 2 to @p scale for which @p folder holds all ten pictures, named "PicSun@2x.png"
    /// at scale 2; otherwise 1.
    [[nodiscard]] static int LargestScale(const QString& folder, int scale);

    PictureBoxes(const QString& folder, int scale);

    [[nodiscard]] int Scale() const { return m_scale; }
    /// The stored picture of that name, of "PicSun.png" at scale 1; a null picture if the file is missing.
    [[nodiscard]] QImage Stored(QLatin1String name) const;

    /// Not initialised until it is cleared.
    QImage PicBox;

private:
    QString m_folder;
    int m_scale = 1;
};
