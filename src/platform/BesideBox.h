// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

#include <vector>

class QWidget;

// A message box is modal: it blocks all windows of the program. These functions serve the windows that stay
// usable beside it: the popup and the tray icon.

/// Call it when @p window receives QEvent::WindowBlocked. The window takes input again from the next turn of
/// the event loop on.
void UnblockWindow(QWidget& window);

/// A window in screen coordinates.
struct WindowOutline
{
    /// Includes the title bar.
    QRect frame;
    /// The smallest rectangle around all its buttons.
    QRect buttons;
};

/// The top left corner nearest to that of @p window at which the window overlaps none of @p others. If there
/// is no such place, the covered area of buttons is the smallest possible.
/// @param area the limits of the window; a window that is larger than the area starts at its top left corner
[[nodiscard]] QPoint ClearPlace(const WindowOutline& window, const std::vector<WindowOutline>& others,
                                const QRect& area);

/// Moves @p window to the centre of @p around, or to the nearest place where it overlaps none of @p others.
/// Call it just before @p window is shown, when its size is final; @p others are shown.
void MoveClear(QWidget& window, const QRect& around, const std::vector<const QWidget*>& others,
               const QRect& area);

/// The shown, not minimised windows of the program that satisfy @p condition.
[[nodiscard]] std::vector<const QWidget*> ShownWindows(bool (*condition)(const QWidget&));
