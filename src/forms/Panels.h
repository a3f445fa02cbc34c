// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBrush>
#include <QRect>

class QColor;
class QPainter;

// The parts from which the boxes, frames and bars are drawn. Their lines cover whole pixels of the screen at
// every scale, one pixel wide at a scale below 2. All rectangles are in the painter's coordinates.

/// The radius of the corners of all boxes and frames, in the painter's coordinates.
constexpr double kCornerRadius = 2.0;

/// Draws a rounded rectangle with a line inside its edge.
/// @param fill may be Qt::NoBrush
void DrawPanel(QPainter& painter, const QRect& rect, const QBrush& fill, const QColor& line,
               double cornerRadius = kCornerRadius);

/// Draws a line along one edge of a rectangle.
/// @param edge Qt::TopEdge or Qt::LeftEdge
void DrawEdge(QPainter& painter, const QRect& rect, Qt::Edge edge, const QColor& line);

/// Draws the filled triangle of an arrow button in the middle of @p rect.
void DrawArrow(QPainter& painter, const QRect& rect, Qt::ArrowType direction, const QColor& colour);

/// Draws the check mark of a ticked box.
void DrawCheckMark(QPainter& painter, const QRect& rect, const QColor& colour);
