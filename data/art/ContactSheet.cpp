// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ContactSheet.h"

#include "Icon.h"
#include "Pictures.h"

#include <QMap>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cstddef>

namespace art {

namespace {

using PictureMap = QMap<QString, QImage>;

/// Puts a sprite down with AND, then OR.
void PutDown(QImage& target, QPoint place, const QImage& mask, const QImage& picture)
{
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            const QPoint at = place + QPoint(x, y);
            if (target.valid(at)) {
                target.setPixel(at, (target.pixel(at) & mask.pixel(x, y)) | picture.pixel(x, y));
            }
        }
    }
}

/// Places of sun and moon are the left upper corners at scale 1.
QImage Scene(const PictureMap& pictures, const QString& light, QPoint sun, QPoint moon, int scale)
{
    QImage scene = pictures[QStringLiteral("PicBack") + light];
    const auto put = [&](const QString& name, QPoint place) {
        PutDown(scene, place * scale, pictures[name + QStringLiteral("Mask")], pictures[name]);
    };
    put(QStringLiteral("PicSun"), sun);
    put(QStringLiteral("PicMoon"), moon);
    put(QStringLiteral("PicFront") + light, {0, 0});
    return scene;
}

} // namespace

QImage ContactSheet(int scale)
{
    PictureMap pictures;
    for (const Picture& picture : PicturesAt(scale)) {
        pictures.insert(picture.name, picture.image);
    }
    const QString day = QStringLiteral("Day");
    const QString night = QStringLiteral("Night");
    constexpr QPoint kAway(-400, -400);
    const std::array scenes{
        Scene(pictures, day, {120, 4}, kAway, scale),      Scene(pictures, day, {-6, 84}, kAway, scale),
        Scene(pictures, day, {178, 60}, {106, 20}, scale), Scene(pictures, day, {235, 80}, {106, 80}, scale),
        Scene(pictures, night, kAway, {106, 14}, scale),   Scene(pictures, night, kAway, {106, 82}, scale),
    };
    constexpr int kGap = 6;
    const QSize cell = scenes.front().size() + QSize(kGap, kGap);
    const int width = cell.width() * 2 + std::max(264, 129 * scale);
    const int height = std::max(cell.height() * 3, 89 * scale + 400);
    QImage sheet(width, height, QImage::Format_RGB32);
    sheet.fill(QColor(0xef, 0xf0, 0xf1));
    QPainter painter(&sheet);
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        const int number = static_cast<int>(i);
        painter.drawImage(QPoint(number % 2 * cell.width(), number / 2 * cell.height()), scenes[i]);
    }
    const int left = cell.width() * 2;
    painter.drawImage(left, 0, pictures[QStringLiteral("Picture2")]);
    const int top = 89 * scale + kGap;
    painter.fillRect(left + 132, top, 132, sheet.height() - top, QColor(0x23, 0x26, 0x29));
    int y = top + kGap;
    for (const int size : kIconSizes) {
        if (size <= 128) {
            painter.drawImage(left, y, Icon(size));
            painter.drawImage(left + 134, y, Icon(size));
            y += size + kGap;
        }
    }
    return sheet;
}

} // namespace art
