// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

#include <vector>

class QWidget;

// A message box is modal: it blocks every window of the program. These functions are for the windows that
// stay usable beside it, the popup and the tray icon.

/// To be called when a modal window has blocked @p window, which an event of type QEvent::WindowBlocked
/// tells. From the next turn of the event loop on @p window takes input again.
void UnblockWindow(QWidget& window);

/// A window on the screen, in the screen's coordinates.
struct WindowOutline
{
    /// With its title bar.
    QRect frame;
    /// The smallest rectangle around all its buttons.
    QRect buttons;
};

/// The top left corner at which @p window, a window that would stand at its @c frame, comes closest to that
/// place and stands clear of @p others.
/// Without room for that as little as possible of the buttons of one lies where the other one does.
/// @param area the window stays inside; one that is larger begins at the top left corner of it
[[nodiscard]] QPoint ClearPlace(const WindowOutline& window, const std::vector<WindowOutline>& others,
                                const QRect& area);

/// Moves @p window, which has its size and is about to be shown, to the middle of @p around, or as near to it
/// as it stands clear of @p others, windows on the screen.
void MoveClear(QWidget& window, const QRect& around, const std::vector<const QWidget*>& others,
               const QRect& area);

/// The windows of the program on the screen that satisfy @p condition.
[[nodiscard]] std::vector<const QWidget*> ShownWindows(bool (*condition)(const QWidget&));
