// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Landscape.h"

#include "Buildings.h"
#include "Canvas.h"

#include <QLinearGradient>
#include <QPainter>

#include <array>
#include <cmath>
#include <functional>

namespace art {

namespace {

/// Fills everything below a ridge; the colour turns from `top` into `foot` between the two heights.
void FillBelow(QPainter& painter, const std::function<double(double)>& ridge, double topY, QRgb top,
               double footY, QRgb foot)
{
    QLinearGradient gradient(0, topY, 0, footY);
    gradient.setColorAt(0, QColor(top));
    gradient.setColorAt(1, QColor(foot));
    painter.fillPath(BelowRidge(kScene, ridge), gradient);
}

double MountainRidge(double x)
{
    return 96.0 + 4.6 * std::sin(x / 31.0 + 0.4) + 2.3 * std::sin(x / 12.7 + 1.9) + 0.8 * std::sin(x / 4.9);
}

double HillRidge(double x)
{
    return 105.0 + 2.6 * std::sin(x / 39.0 + 2.7) + 0.9 * std::sin(x / 15.0);
}

double GroundRidge(double x)
{
    return 115.5 + 1.9 * std::sin(x / 44.0 + 0.9) + 0.7 * std::sin(x / 17.0 + 2.0);
}

void DrawTown(QPainter& painter, const LandscapeColours& colours)
{
    constexpr double kFoot = 121;
    struct House
    {
        double left;
        double width;
        double top;
    };
    constexpr std::array kBehind{
        House{37, 8, 104},  House{44, 9, 101},  House{72, 8, 103},  House{80, 9, 106},  House{140, 9, 106},
        House{149, 8, 102}, House{158, 9, 105}, House{224, 9, 101}, House{233, 8, 105}, House{246, 8, 104},
    };
    constexpr std::array kBefore{
        House{31, 8, 109},  House{39, 10, 107},  House{66, 9, 108},  House{75, 8, 110},   House{84, 10, 109},
        House{95, 8, 112},  House{133, 9, 111},  House{142, 8, 109}, House{151, 10, 108}, House{161, 8, 110},
        House{220, 9, 108}, House{230, 10, 107}, House{241, 9, 109}, House{251, 9, 108},  House{260, 8, 111},
    };
    unsigned number = 7;
    for (const House& house : kBehind) {
        DrawHouse(painter, QRectF(house.left, house.top, house.width, kFoot - house.top), number++ * 977U,
                  colours);
    }
    DrawMinaret(painter, QPointF(62, kFoot), 36, 3.0, colours);
    FillRounded(painter, DomeOutline(QPointF(55, 106), 5.4), colours.domeLight, colours.dome,
                colours.domeShade);
    DrawHouse(painter, QRectF(49.5, 106, 11, kFoot - 106), number++, colours);
    DrawMosque(painter, QPointF(193, kFoot - 3), 1.0, colours);
    for (const House& house : kBefore) {
        DrawHouse(painter, QRectF(house.left, house.top, house.width, kFoot - house.top), number++ * 977U,
                  colours);
    }
}

/// Round tree tops along the edge of the meadow.
void DrawGroves(QPainter& painter, const LandscapeColours& colours)
{
    painter.setPen(Qt::NoPen);
    unsigned lot = 41;
    for (double x = -2; x < kScene.width() + 3;) {
        lot = lot * 1103515245U + 12345U;
        const double radius = 1.3 + ((lot >> 16U) % 100U) / 100.0 * 1.5;
        painter.setBrush(QColor((lot >> 24U) % 3U == 0 ? colours.leaf : colours.grove));
        painter.drawEllipse(QPointF(x, GroundRidge(x) + 0.5 - radius * 0.35), radius * 1.15, radius);
        x += radius * (1.1 + ((lot >> 8U) % 100U) / 45.0);
    }
}

} // namespace

void DrawLandscape(QPainter& painter, const LandscapeColours& colours)
{
    FillBelow(painter, MountainRidge, 90, colours.mountain, 106, colours.mountainFoot);
    FillBelow(painter, HillRidge, 102, colours.hill, 113, colours.hillFoot);
    DrawTown(painter, colours);
    DrawGroves(painter, colours);
    FillBelow(painter, GroundRidge, 113, colours.ground, 125, colours.groundFoot);
    DrawPalm(painter, QPointF(10, 119), 25, 3, colours);
    DrawPalm(painter, QPointF(15, 120), 18, -3, colours);
    DrawPalm(painter, QPointF(22, 120), 14, 2.5, colours);
    DrawPalm(painter, QPointF(111, 120), 15, 2, colours);
    DrawPalm(painter, QPointF(117, 121), 12, -2, colours);
    DrawPalm(painter, QPointF(268, 121), 22, -4, colours);
    DrawPalm(painter, QPointF(262, 121), 15, 2, colours);
}

} // namespace art
