// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Palette.h"

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

class QPainter;

namespace art {

/// A pointed dome that stands on the line y = `foot.y()`, one and a half times as high as `radius`.
[[nodiscard]] QPainterPath DomeOutline(QPointF foot, double radius);

/// A minaret of `height` from its foot to the tip, and `width` at the foot.
[[nodiscard]] QPainterPath MinaretOutline(QPointF foot, double height, double width);

/// Fills a round body with light from the left and shade on the right.
void FillRounded(QPainter& painter, const QPainterPath& body, QRgb light, QRgb middle, QRgb shade);

void DrawMosque(QPainter& painter, QPointF foot, double size, const LandscapeColours& colours);
void DrawMinaret(QPainter& painter, QPointF foot, double height, double width,
                 const LandscapeColours& colours);
/// `litFrom` chooses which of the house's windows are lit.
void DrawHouse(QPainter& painter, const QRectF& body, unsigned litFrom, const LandscapeColours& colours);
/// `lean` is how far the crown stands to the right of the foot.
void DrawPalm(QPainter& painter, QPointF foot, double height, double lean, const LandscapeColours& colours);

} // namespace art
