// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Canvas.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace art {

namespace {

/// Sub-pixels of a pixel in each direction, in addition to the painter's own antialiasing.
constexpr int kOversampling = 4;

QRgb AverageOfBlock(const QImage& fine, int left, int top)
{
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    unsigned alpha = 0;
    for (int row = 0; row < kOversampling; ++row) {
        const auto* line = reinterpret_cast<const QRgb*>(fine.constScanLine(top + row)) + left;
        for (int column = 0; column < kOversampling; ++column) {
            red += static_cast<unsigned>(qRed(line[column]));
            green += static_cast<unsigned>(qGreen(line[column]));
            blue += static_cast<unsigned>(qBlue(line[column]));
            alpha += static_cast<unsigned>(qAlpha(line[column]));
        }
    }
    constexpr unsigned kCount = kOversampling * kOversampling;
    const auto average = [](unsigned sum) { return static_cast<int>((sum + kCount / 2) / kCount); };
    return qRgba(average(red), average(green), average(blue), average(alpha));
}

/// `front` is premultiplied, `back` opaque.
QRgb Over(QRgb front, QRgb back)
{
    const int rest = 255 - qAlpha(front);
    const auto channel = [rest](int over, int under) {
        return std::min(255, over + (under * rest + 127) / 255);
    };
    return qRgb(channel(qRed(front), qRed(back)), channel(qGreen(front), qGreen(back)),
                channel(qBlue(front), qBlue(back)));
}

} // namespace

QImage Render(QSize size, int scale, const std::function<void(QPainter&)>& paint)
{
    const QSize target = size * scale;
    QImage fine(target * kOversampling, QImage::Format_ARGB32_Premultiplied);
    fine.fill(Qt::transparent);
    QPainter painter(&fine);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale * kOversampling, scale * kOversampling);
    paint(painter);
    painter.end();

    QImage result(target, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < target.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < target.width(); ++x) {
            line[x] = AverageOfBlock(fine, x * kOversampling, y * kOversampling);
        }
    }
    return result;
}

QColor Mix(QColor from, QColor to, double share)
{
    const auto channel = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return QColor(channel(from.red(), to.red()), channel(from.green(), to.green()),
                  channel(from.blue(), to.blue()));
}

QColor ColourAt(std::span<const Stop> gradient, double position)
{
    const auto below = std::find_if(gradient.begin(), gradient.end(),
                                    [position](const Stop& stop) { return stop.position >= position; });
    if (below == gradient.begin()) {
        return gradient.front().colour;
    }
    if (below == gradient.end()) {
        return gradient.back().colour;
    }
    const Stop& above = *std::prev(below);
    return Mix(above.colour, below->colour, (position - above.position) / (below->position - above.position));
}

QImage VerticalGradient(QSize size, int scale, std::span<const Stop> gradient)
{
    QImage result(size * scale, QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        const QRgb colour = ColourAt(gradient, (y + 0.5) / result.height()).rgb();
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        std::fill_n(line, result.width(), colour);
    }
    return result;
}

QPainterPath BelowRidge(QSize size, const std::function<double(double)>& ridge)
{
    constexpr int kStepsPerUnit = 2;
    QPainterPath path(QPointF(-1, size.height() + 1));
    for (int step = -kStepsPerUnit; step <= (size.width() + 1) * kStepsPerUnit; ++step) {
        const double x = static_cast<double>(step) / kStepsPerUnit;
        path.lineTo(x, ridge(x));
    }
    path.lineTo(size.width() + 1, size.height() + 1);
    path.closeSubpath();
    return path;
}

Sprite CutOut(const QImage& shape, const QImage& behind, double threshold)
{
    constexpr QRgb kBlack = 0xff000000;
    constexpr QRgb kWhite = 0xffffffff;
    Sprite sprite{QImage(shape.size(), QImage::Format_RGB32), QImage(shape.size(), QImage::Format_RGB32)};
    for (int y = 0; y < shape.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(shape.constScanLine(y));
        const auto* back = reinterpret_cast<const QRgb*>(behind.constScanLine(y));
        auto* mask = reinterpret_cast<QRgb*>(sprite.mask.scanLine(y));
        auto* picture = reinterpret_cast<QRgb*>(sprite.picture.scanLine(y));
        for (int x = 0; x < shape.width(); ++x) {
            const bool inside = qAlpha(from[x]) > threshold * 255;
            mask[x] = inside ? kBlack : kWhite;
            picture[x] = inside ? Over(from[x], back[x]) : kBlack;
        }
    }
    return sprite;
}

} // namespace art
