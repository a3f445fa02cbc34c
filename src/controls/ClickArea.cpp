// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ClickArea.h"

#include <QMouseEvent>
#include <QWidget>

ClickArea::ClickArea(QWidget* widget, std::function<void()> handler)
    : QObject(widget)
    , m_handler(std::move(handler))
{
    widget->installEventFilter(this);
}

bool ClickArea::eventFilter(QObject* watched, QEvent* event)
{
    const auto* const widget = static_cast<QWidget*>(watched);
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;
    if ((!isPress && !isRelease) || !widget->isEnabled()) {
        return false;
    }
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    const bool isLeft = mouse->button() == Qt::LeftButton;
    const bool wasPressed = std::exchange(m_pressed, isPress && isLeft);
    if (isRelease && isLeft && wasPressed && widget->rect().contains(mouse->position().toPoint())) {
        m_handler();
    }
    return true;
}
