// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Palette.h"

#include <QImage>
#include <QPainterPath>
#include <QSize>

#include <functional>
#include <span>

class QPainter;

namespace art {

/// Paints at `scale` times `size` and answers premultiplied colour with the exact share of each pixel
/// covered. `paint` works in the units of `size`.
[[nodiscard]] QImage Render(QSize size, int scale, const std::function<void(QPainter&)>& paint);

/// The colour between `from` (share 0) and `to` (share 1).
[[nodiscard]] QColor Mix(QColor from, QColor to, double share);

/// The colour of a vertical gradient at `position` (0 to 1), eased between its stops so that no stop shows as
/// a line.
[[nodiscard]] QColor ColourAt(std::span<const Stop> gradient, double position);

/// An opaque picture of a vertical gradient, `scale` times `size`.
[[nodiscard]] QImage VerticalGradient(QSize size, int scale, std::span<const Stop> gradient);

/// Everything in a picture of `size` that lies below a ridge, whose height is a function of the place from
/// the left.
[[nodiscard]] QPainterPath BelowRidge(QSize size, const std::function<double(double)>& ridge);

/// A sprite for the pair of raster operations AND, then OR.
struct Sprite
{
    QImage mask;    ///< black where the shape stands, white elsewhere; no other value
    QImage picture; ///< black outside the shape
};

/// Cuts the sprite out of `shape`. A pixel belongs to the shape when more than `threshold` of it is covered.
/// Since a mask knows no shades, a partly covered pixel is softened in the picture instead: it is mixed with
/// the pixel of `behind` that it will most likely stand before. `behind` is as large as `shape`.
[[nodiscard]] Sprite CutOut(const QImage& shape, const QImage& behind, double threshold);

} // namespace art
