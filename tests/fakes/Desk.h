// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

/// Mouse and event loop as a user and the window system have them: the window finds the widget by the place.
namespace Desk {

/// Serves everything that is due, zero-delay timers and what they start included.
inline void Settle()
{
    for (int turn = 0; turn < 10; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

[[nodiscard]] inline QPoint PlaceInWindow(const QWidget& widget, const QPoint& place)
{
    return widget.mapTo(widget.window(), place);
}

inline void MoveTo(const QWidget& widget, const QPoint& place = {3, 3})
{
    QTest::mouseMove(widget.window()->windowHandle(), PlaceInWindow(widget, place));
    Settle();
}

inline void Click(const QWidget& widget, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseClick(widget.window()->windowHandle(), button, Qt::NoModifier,
                      PlaceInWindow(widget, widget.rect().center()));
    Settle();
}

/// Two clicks in quick succession, of which the window system makes a double click.
inline void DoubleClick(const QWidget& widget)
{
    QTest::mouseDClick(widget.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                       PlaceInWindow(widget, widget.rect().center()));
    Settle();
}

} // namespace Desk
