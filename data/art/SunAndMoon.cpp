// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SunAndMoon.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>

namespace art {

namespace {

constexpr QSize kSunSize{32, 33};
constexpr QSize kMoonSize{31, 32};
/// The backgrounds that the two rims are mixed with: the sun is seen only before the day sky, the moon before
/// both skies.
constexpr QRgb kBehindSun = 0xffa3ccef;
constexpr QRgb kBehindMoon = 0xff7f8aa8;

QImage Plain(QSize size, QRgb colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

void DrawSun(QPainter& painter)
{
    const QPointF centre(16, 16.5);
    constexpr double kRadius = 15.4;
    QRadialGradient light(centre, kRadius);
    light.setColorAt(0.00, QColor(0xff, 0xfd, 0xea));
    light.setColorAt(0.40, QColor(0xff, 0xf4, 0xac));
    light.setColorAt(0.72, QColor(0xff, 0xe0, 0x55));
    light.setColorAt(0.90, QColor(0xff, 0xc9, 0x2e));
    light.setColorAt(1.00, QColor(0xfb, 0xb0, 0x22));
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawEllipse(centre, kRadius, kRadius);
}

struct Spot
{
    double x;
    double y;
    double width;
    double height;
};

void DrawMoonSurface(QPainter& painter, QPointF centre)
{
    // The dark plains, roughly where the near side has them.
    constexpr std::array kPlains{
        Spot{-5.2, -4.6, 5.0, 4.4}, Spot{2.6, -5.4, 3.5, 3.0}, Spot{5.6, -1.6, 3.6, 3.0},
        Spot{-8.2, 1.0, 3.6, 5.0},  Spot{-4.2, 4.4, 2.9, 2.3}, Spot{10.2, -4.6, 1.5, 1.9},
        Spot{8.0, 2.4, 2.2, 2.5},
    };
    constexpr std::array kCraters{
        Spot{1.4, 10.4, 1.3, 1.2},   Spot{-4.6, 0.6, 0.9, 0.9}, Spot{-9.0, -2.0, 0.6, 0.6},
        Spot{4.6, 6.6, 1.0, 0.9},    Spot{-2.0, 8.0, 0.8, 0.8}, Spot{8.4, 7.4, 0.8, 0.8},
        Spot{-0.8, -10.8, 0.8, 0.6},
    };
    for (const Spot& plain : kPlains) {
        const QPointF place = centre + QPointF(plain.x, plain.y);
        QRadialGradient shade(QPointF(0, 0), 1.0);
        shade.setColorAt(0.0, QColor(0x8e, 0x95, 0xa6, 190));
        shade.setColorAt(0.7, QColor(0x96, 0x9d, 0xad, 150));
        shade.setColorAt(1.0, QColor(0xa0, 0xa6, 0xb4, 0));
        painter.save();
        painter.translate(place);
        painter.scale(plain.width, plain.height);
        painter.setBrush(shade);
        painter.drawEllipse(QPointF(0, 0), 1.0, 1.0);
        painter.restore();
    }
    for (const Spot& crater : kCraters) {
        const QPointF place = centre + QPointF(crater.x, crater.y);
        painter.setBrush(QColor(0xff, 0xff, 0xff, 150));
        painter.drawEllipse(place, crater.width, crater.height);
        painter.setBrush(QColor(0xa4, 0xaa, 0xb8, 170));
        painter.drawEllipse(place + QPointF(0.25, 0.25), crater.width * 0.7, crater.height * 0.7);
    }
}

void DrawMoon(QPainter& painter)
{
    const QPointF centre(15.5, 16);
    constexpr double kRadius = 14.9;
    QPainterPath disc;
    disc.addEllipse(centre, kRadius, kRadius);
    painter.fillPath(disc, QColor(0xe2, 0xe5, 0xeb));
    painter.setClipPath(disc);
    painter.setPen(Qt::NoPen);
    DrawMoonSurface(painter, centre);
    QRadialGradient limb(centre, kRadius);
    limb.setColorAt(0.00, QColor(0x60, 0x68, 0x80, 0));
    limb.setColorAt(0.70, QColor(0x60, 0x68, 0x80, 0));
    limb.setColorAt(1.00, QColor(0x60, 0x68, 0x80, 130));
    painter.fillPath(disc, limb);
}

} // namespace

Sprite Sun(int scale)
{
    return CutOut(Render(kSunSize, scale, DrawSun), Plain(kSunSize * scale, kBehindSun), 0.3);
}

Sprite Moon(int scale)
{
    return CutOut(Render(kMoonSize, scale, DrawMoon), Plain(kMoonSize * scale, kBehindMoon), 0.4);
}

} // namespace art
