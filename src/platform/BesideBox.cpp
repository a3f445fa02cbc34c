// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/BesideBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QWindow>

#include <algorithm>
#include <tuple>

namespace {

using Cost = std::tuple<int, int, int>;

// Qt does not block a window whose chain of transient parents contains the modal window.
void PutInFrontOfModalWindow(QWidget& window)
{
    QWidget* const modal = QApplication::activeModalWidget();
    window.windowHandle()->setTransientParent(modal == nullptr ? nullptr : modal->windowHandle());
    if (modal != nullptr) {
        // A second modal window may lie below this one; it is then the modal window again.
        QObject::connect(modal, &QObject::destroyed, &window, [&window] { PutInFrontOfModalWindow(window); });
    }
}

int Area(const QRect& rectangle)
{
    return rectangle.width() * rectangle.height();
}

// In descending weight: the covered area of buttons, the overlap of the windows, the squared distance.
Cost CostOf(const WindowOutline& window, const QPoint& place, const std::vector<WindowOutline>& others)
{
    const QPoint offset = place - window.frame.topLeft();
    const QRect frame = window.frame.translated(offset);
    const QRect buttons = window.buttons.translated(offset);
    int buttonArea = 0;
    int frameArea = 0;
    for (const WindowOutline& other : others) {
        buttonArea += Area(buttons & other.frame) + Area(frame & other.buttons);
        frameArea += Area(frame & other.frame);
    }
    return {buttonArea, frameArea, QPoint::dotProduct(offset, offset)};
}

// The place nearest to @p place at which a window of that size lies inside the area.
QPoint Inside(const QPoint& place, const QSize& size, const QRect& area)
{
    const auto inside = [](int coordinate, int length, int first, int areaLength) {
        return std::clamp(coordinate, first, first + std::max(0, areaLength - length));
    };
    return {inside(place.x(), size.width(), area.left(), area.width()),
            inside(place.y(), size.height(), area.top(), area.height())};
}

QRect ButtonsOf(const QWidget& window)
{
    QRect buttons;
    for (const auto* const button : window.findChildren<QAbstractButton*>()) {
        if (button->isVisibleTo(&window)) {
            buttons |= QRect(button->mapTo(&window, QPoint()), button->size());
        }
    }
    return buttons;
}

} // namespace

void UnblockWindow(QWidget& window)
{
    // Queued: a window that is just being shown would be announced to the window manager as a child of the
    // box, and the manager hides and activates children with their parent.
    QMetaObject::invokeMethod(
        &window, [&window] { PutInFrontOfModalWindow(window); }, Qt::QueuedConnection);
}

QPoint ClearPlace(const WindowOutline& window, const std::vector<WindowOutline>& others, const QRect& area)
{
    const QRect& frame = window.frame;
    // Candidates: the wanted place, and the places beside each other window.
    std::vector<int> columns{frame.left()};
    std::vector<int> rows{frame.top()};
    for (const WindowOutline& other : others) {
        columns.insert(columns.end(), {other.frame.left() - frame.width(), other.frame.right() + 1});
        rows.insert(rows.end(), {other.frame.top() - frame.height(), other.frame.bottom() + 1});
    }
    QPoint best = Inside(frame.topLeft(), frame.size(), area);
    for (const int column : columns) {
        for (const int row : rows) {
            const QPoint place = Inside({column, row}, frame.size(), area);
            if (CostOf(window, place, others) < CostOf(window, best, others)) {
                best = place;
            }
        }
    }
    return best;
}

void MoveClear(QWidget& window, const QRect& around, const std::vector<const QWidget*>& others,
               const QRect& area)
{
    QMargins margins;
    std::vector<WindowOutline> outlines;
    for (const QWidget* const other : others) {
        // From the QWindow: the widget keeps the frame that it read before the window manager had finished.
        outlines.push_back({other->windowHandle()->frameGeometry(),
                            ButtonsOf(*other).translated(other->mapToGlobal(QPoint()))});
        // A window has no frame before it is shown; use that of another window as an estimate.
        margins = other->windowHandle()->frameMargins();
    }
    WindowOutline outline{QRect(QPoint(), window.size()).marginsAdded(margins), ButtonsOf(window)};
    const QPoint offset = around.center() - outline.frame.center();
    outline.frame.translate(offset);
    outline.buttons.translate(offset);
    // Set the client area: whether move() counts the frame depends on the state of the window.
    const QPoint inside(margins.left(), margins.top());
    window.setGeometry(QRect(ClearPlace(outline, outlines, area) + inside, window.size()));
}

std::vector<const QWidget*> ShownWindows(bool (*condition)(const QWidget&))
{
    std::vector<const QWidget*> windows;
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && !window->isMinimized() && condition(*window)) {
            windows.push_back(window);
        }
    }
    return windows;
}
