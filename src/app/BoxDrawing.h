// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyle>

class QStyleOptionComplex;

// The elements of WindowStyle that are not drawn by Fusion. Each function returns false, and draws nothing,
// for any other element.

/// Draws a text box, a frame, the line around a text with the focus, a tooltip, a button, or the indicator of
/// a check box or an option.
[[nodiscard]] bool DrawBox(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                           const QWidget* widget);

/// Draws a frame that is a horizontal or vertical line.
[[nodiscard]] bool DrawFrameLine(QStyle::ControlElement element, const QStyleOption& option,
                                 QPainter& painter);

/// Draws a group box without a check box, a scroll bar, or the frame and the arrow of a combo box.
[[nodiscard]] bool DrawComplexBox(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                                  QPainter& painter, const QStyle& style, const QWidget* widget);
