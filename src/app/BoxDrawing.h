// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyle>

class QStyleOptionSlider;

/// Draws a text box, a frame, a button, or the mark of a check box or an option. Returns false, and draws
/// nothing, for any other element.
bool DrawBox(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
             const QWidget* widget);

/// Draws a scroll bar.
void DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QStyle& style,
                   const QWidget* widget);
