// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/PictureBoxes.h"

#include "instruments/PngFile.h"

#include <QFile>

#include <algorithm>
#include <iterator>

namespace {

constexpr QLatin1String kStored[] = {PictureBoxes::PicBackDay,        PictureBoxes::PicBackNight,
                                     PictureBoxes::PicFrontDayMask,   PictureBoxes::PicFrontDay,
                                     PictureBoxes::PicFrontNightMask, PictureBoxes::PicFrontNight,
                                     PictureBoxes::PicSunMask,        PictureBoxes::PicSun,
                                     PictureBoxes::PicMoonMask,       PictureBoxes::PicMoon};

QString PathOf(const QString& folder, QLatin1String name, int scale)
{
    const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
    return folder + u'/' + name + suffix + QStringLiteral(".png");
}

} // namespace

int PictureBoxes::LargestScale(const QString& folder, int scale)
{
    const auto isWhole = [&folder](int tried) {
        return std::all_of(std::begin(kStored), std::end(kStored),
                           [&](QLatin1String name) { return QFile::exists(PathOf(folder, name, tried)); });
    };
    int tried = scale;
    while (tried > 1 && !isWhole(tried)) {
        --tried;
    }
    return tried;
}

PictureBoxes::PictureBoxes(const QString& folder, int scale)
    : PicBox(kWidth * scale, kHeight * scale, QImage::Format_RGB32)
    , m_folder(folder)
    , m_scale(scale)
{
}

QImage PictureBoxes::Stored(QLatin1String name) const
{
    return ReadPng(PathOf(m_folder, name, m_scale)).convertToFormat(QImage::Format_RGB32);
}
