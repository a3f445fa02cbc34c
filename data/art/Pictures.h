// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>

#include <array>
#include <vector>

namespace art {

inline constexpr std::array kScales{1, 2, 3};

struct Picture
{
    QString name; ///< without folder, scale and suffix
    QImage image;
};

/// All pictures of the window at one scale. Needs a QGuiApplication, see Banner().
[[nodiscard]] std::vector<Picture> PicturesAt(int scale);

/// "PicSun.png" at scale 1, "PicSun@2x.png" at scale 2.
[[nodiscard]] QString PictureFileName(const QString& name, int scale);

} // namespace art
