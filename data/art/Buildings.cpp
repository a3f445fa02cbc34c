// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Buildings.h"

#include <QLinearGradient>
#include <QPainter>

#include <array>
#include <cmath>

namespace art {

namespace {

void FillRect(QPainter& painter, const QRectF& rect, QRgb colour)
{
    painter.fillRect(rect, QColor(colour));
}

/// A pole with two balls and a crescent, which opens upwards.
void DrawFinial(QPainter& painter, QPointF tip, double size, QRgb colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(colour));
    painter.drawRect(QRectF(tip.x() - 0.09 * size, tip.y() - 0.5 * size, 0.18 * size, 1.1 * size));
    painter.drawEllipse(QPointF(tip.x(), tip.y()), 0.26 * size, 0.26 * size);
    QPainterPath disc;
    disc.addEllipse(QPointF(tip.x(), tip.y() - 0.95 * size), 0.48 * size, 0.48 * size);
    QPainterPath bite;
    bite.addEllipse(QPointF(tip.x(), tip.y() - 1.18 * size), 0.38 * size, 0.38 * size);
    painter.drawPath(disc.subtracted(bite));
}

/// A pointed arch that stands on the middle of `foot`.
QPainterPath ArchOutline(QPointF foot, double width, double height)
{
    const double half = width / 2;
    QPainterPath path(QPointF(foot.x() - half, foot.y()));
    path.lineTo(foot.x() - half, foot.y() - height * 0.55);
    path.quadTo(foot.x() - half, foot.y() - height * 0.85, foot.x(), foot.y() - height);
    path.quadTo(foot.x() + half, foot.y() - height * 0.85, foot.x() + half, foot.y() - height * 0.55);
    path.lineTo(foot.x() + half, foot.y());
    path.closeSubpath();
    return path;
}

void DrawDome(QPainter& painter, QPointF foot, double radius, const LandscapeColours& colours)
{
    const QRectF drum(foot.x() - radius * 0.9, foot.y(), radius * 1.8, radius * 0.34);
    QPainterPath drumPath;
    drumPath.addRect(drum);
    FillRounded(painter, drumPath, colours.roofLight, colours.wall, colours.wallShade);
    FillRounded(painter, DomeOutline(foot, radius), colours.domeLight, colours.dome, colours.domeShade);
    DrawFinial(painter, foot - QPointF(0, radius * 1.5), 1.2 + radius * 0.13, colours.finial);
}

QPainterPath FrondOutline(QPointF crown, double angle, double length)
{
    const QPointF out(std::cos(angle) * length, -std::sin(angle) * length * 0.72);
    const QPointF tip = crown + out + QPointF(0, length * 0.42);
    const QPointF arch = crown + out * 0.62 - QPointF(0, length * 0.20);
    QPainterPath path(crown);
    path.quadTo(arch, tip);
    path.quadTo(arch + QPointF(0, length * 0.24), crown);
    return path;
}

} // namespace

QPainterPath DomeOutline(QPointF foot, double radius)
{
    const double x = foot.x();
    const double y = foot.y();
    QPainterPath path(QPointF(x - radius * 0.93, y));
    path.cubicTo(x - radius * 1.24, y - radius * 0.62, x - radius * 0.72, y - radius * 1.12, x,
                 y - radius * 1.5);
    path.cubicTo(x + radius * 0.72, y - radius * 1.12, x + radius * 1.24, y - radius * 0.62,
                 x + radius * 0.93, y);
    path.closeSubpath();
    return path;
}

QPainterPath MinaretOutline(QPointF foot, double height, double width)
{
    const double half = width / 2;
    const auto at = [foot, height](double dx, double rise) {
        return QPointF(foot.x() + dx, foot.y() - height * rise);
    };
    QPainterPath path(at(-half, 0));
    path.lineTo(at(-half * 0.86, 0.60));
    path.lineTo(at(-half * 1.45, 0.64));
    path.lineTo(at(-half * 1.45, 0.68));
    path.lineTo(at(-half * 0.66, 0.68));
    path.lineTo(at(-half * 0.66, 0.83));
    path.quadTo(at(-half * 1.10, 0.89), at(0, 1.0));
    path.quadTo(at(half * 1.10, 0.89), at(half * 0.66, 0.83));
    path.lineTo(at(half * 0.66, 0.68));
    path.lineTo(at(half * 1.45, 0.68));
    path.lineTo(at(half * 1.45, 0.64));
    path.lineTo(at(half * 0.86, 0.60));
    path.lineTo(at(half, 0));
    path.closeSubpath();
    return path;
}

void FillRounded(QPainter& painter, const QPainterPath& body, QRgb light, QRgb middle, QRgb shade)
{
    const QRectF box = body.boundingRect();
    QLinearGradient gradient(box.topLeft(), box.topRight());
    gradient.setColorAt(0.0, QColor(middle));
    gradient.setColorAt(0.28, QColor(light));
    gradient.setColorAt(0.55, QColor(middle));
    gradient.setColorAt(1.0, QColor(shade));
    painter.fillPath(body, gradient);
}

void DrawMinaret(QPainter& painter, QPointF foot, double height, double width,
                 const LandscapeColours& colours)
{
    FillRounded(painter, MinaretOutline(foot, height, width), colours.roofLight, colours.wall,
                colours.wallShade);
    const auto band = [&](double rise, double half, QRgb colour) {
        FillRect(painter, QRectF(foot.x() - half, foot.y() - height * rise, half * 2, 0.6), colour);
    };
    band(0.66, width * 0.72, colours.wallShade);
    band(0.40, width * 0.44, colours.wallShade);
    painter.save();
    painter.setClipRect(QRectF(foot.x() - width, foot.y() - height, width * 2, height * 0.18));
    FillRounded(painter, MinaretOutline(foot, height, width), colours.domeLight, colours.dome,
                colours.domeShade);
    painter.restore();
    FillRect(painter, QRectF(foot.x() - 0.4, foot.y() - height * 0.78, 0.8, height * 0.07),
             colours.litWindow);
    DrawFinial(painter, foot - QPointF(0, height), 1.15, colours.finial);
}

void DrawMosque(QPainter& painter, QPointF foot, double size, const LandscapeColours& colours)
{
    const auto at = [foot, size](double x, double rise) { return foot + QPointF(x * size, -rise * size); };
    DrawMinaret(painter, at(-25, 0), 43 * size, 3.5 * size, colours);
    DrawMinaret(painter, at(25, 0), 43 * size, 3.5 * size, colours);
    DrawDome(painter, at(0, 15), 10 * size, colours);
    FillRect(painter, QRectF(at(-10.5, 13), at(10.5, 0)), colours.wall);
    for (const double x : {-15.5, 15.5}) {
        DrawDome(painter, at(x, 10.4), 4.4 * size, colours);
    }
    QPainterPath hall;
    hall.addRect(QRectF(at(-21, 9.4), at(21, 0)));
    FillRounded(painter, hall, colours.roofLight, colours.wall, colours.wallShade);
    FillRect(painter, QRectF(at(-21.5, 10), at(21.5, 9.2)), colours.roofLight);
    FillRect(painter, QRectF(at(-11, 13.4), at(11, 12.7)), colours.roofLight);
    for (const double x : {-18.0, -14.5, -11.0, 11.0, 14.5, 18.0}) {
        painter.fillPath(ArchOutline(at(x, 2.2), 1.6 * size, 4.8 * size), QColor(colours.litWindow));
    }
    for (const double x : {-6.5, -2.2, 2.2, 6.5}) {
        painter.fillPath(ArchOutline(at(x, 10.3), 1.0 * size, 1.9 * size), QColor(colours.window));
    }
    painter.fillPath(ArchOutline(at(0, 0), 8.4 * size, 9.0 * size), QColor(colours.wallShade));
    painter.fillPath(ArchOutline(at(0, 0), 5.4 * size, 7.0 * size), QColor(colours.litWindow));
}

void DrawHouse(QPainter& painter, const QRectF& body, unsigned litFrom, const LandscapeColours& colours)
{
    const double turn = body.left() + body.width() * 0.64;
    FillRect(painter, body, colours.wall);
    FillRect(painter, QRectF(QPointF(turn, body.top()), body.bottomRight()), colours.wallShade);
    FillRect(painter, QRectF(body.left() - 0.2, body.top(), turn - body.left() + 0.2, 0.8),
             colours.roofLight);
    constexpr double kFirstColumn = 1.2;
    constexpr double kFirstRow = 2.6;
    constexpr QSizeF kPitch(2.6, 3.6);
    const int columns = static_cast<int>(std::ceil((turn - body.left() - 2 * kFirstColumn) / kPitch.width()));
    const int rows = static_cast<int>(std::ceil((body.height() - kFirstRow - 2.5) / kPitch.height()));
    unsigned lot = litFrom;
    for (int number = 0; number < rows * columns; ++number) {
        lot = lot * 1103515245U + 12345U;
        const bool lit = (lot >> 16U) % 5U == 0;
        const int column = number % columns;
        const int row = number / columns;
        const QPointF place = body.topLeft() + QPointF(kFirstColumn + column * kPitch.width(),
                                                       kFirstRow + row * kPitch.height());
        FillRect(painter, QRectF(place, QSizeF(0.9, 1.5)), lit ? colours.litWindow : colours.window);
    }
}

void DrawPalm(QPainter& painter, QPointF foot, double height, double lean, const LandscapeColours& colours)
{
    const QPointF crown = foot + QPointF(lean, -height);
    QPainterPath trunk(foot - QPointF(0.8, 0));
    trunk.quadTo(foot + QPointF(-0.3, -height * 0.6), crown - QPointF(0.35, 0));
    trunk.lineTo(crown + QPointF(0.35, 0));
    trunk.quadTo(foot + QPointF(0.9, -height * 0.6), foot + QPointF(0.8, 0));
    painter.fillPath(trunk, QColor(colours.trunk));

    constexpr std::array kAngles{-0.30, 0.20, 0.70, 1.20, 1.65, 2.10, 2.55, 3.00, 3.45};
    const double length = 3.4 + height * 0.2;
    for (std::size_t i = 0; i < kAngles.size(); ++i) {
        painter.fillPath(FrondOutline(crown, kAngles[i], length * (i % 2 == 0 ? 1.0 : 0.88)),
                         QColor(i % 2 == 0 ? colours.leaf : colours.leafLight));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(colours.leaf));
    painter.drawEllipse(crown, 0.9, 0.8);
}

} // namespace art
