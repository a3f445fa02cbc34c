// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/PngFile.h"

#include <QImageReader>

QImage ReadPng(const QString& path)
{
    QImageReader reader(path, "png");
    reader.setAutoDetectImageFormat(false);
    QImage picture = reader.read();
    // Qt reads a pixel ratio from a name such as "PicSun@2x.png".
    picture.setDevicePixelRatio(1.0);
    return picture;
}
