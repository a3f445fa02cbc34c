// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/PictureBoxes.h"

#include "instruments/PngFile.h"

#include <utility>

namespace {

QImage LoadPicture(const QString& folder, QLatin1String name, int scale)
{
    const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
    return ReadPng(folder + u'/' + name + suffix + QStringLiteral(".png"))
        .convertToFormat(QImage::Format_RGB32);
}

PictureBoxes AtScale(int scale)
{
    PictureBoxes boxes;
    boxes.scale = scale;
    boxes.PicBox = QImage(PictureBoxes::kWidth * scale, PictureBoxes::kHeight * scale, QImage::Format_RGB32);
    return boxes;
}

/// False if a picture is missing.
bool LoadAll(PictureBoxes& boxes, const QString& folder)
{
    const std::pair<const char*, QImage*> pictures[] = {
        {"PicBackDay", &boxes.PicBackDay},
        {"PicBackNight", &boxes.PicBackNight},
        {"PicFrontDayMask", &boxes.PicFrontDayMask},
        {"PicFrontDay", &boxes.PicFrontDay},
        {"PicFrontNightMask", &boxes.PicFrontNightMask},
        {"PicFrontNight", &boxes.PicFrontNight},
        {"PicSunMask", &boxes.PicSunMask},
        {"PicSun", &boxes.PicSun},
        {"PicMoonMask", &boxes.PicMoonMask},
        {"PicMoon", &boxes.PicMoon},
    };
    bool isWhole = true;
    for (const auto& [name, picture] : pictures) {
        *picture = LoadPicture(folder, QLatin1String(name), boxes.scale);
        isWhole = isWhole && !picture->isNull();
    }
    return isWhole;
}

} // namespace

PictureBoxes PictureBoxes::Load(const QString& folder)
{
    PictureBoxes boxes = AtScale(1);
    LoadAll(boxes, folder);
    return boxes;
}

std::optional<PictureBoxes> PictureBoxes::LoadLarger(const QString& folder, int scale)
{
    for (int tried = scale; tried > 1; --tried) {
        PictureBoxes boxes = AtScale(tried);
        if (LoadAll(boxes, folder)) {
            return boxes;
        }
    }
    return std::nullopt;
}
