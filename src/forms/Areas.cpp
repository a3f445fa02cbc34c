// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Areas.h"

#include "forms/LinkLabel.h"

#include <QEvent>
#include <QMouseEvent>
#include <QWidget>

namespace {

// Mouse moves over a disabled area reach the widget behind it.
void LetThroughWhileDisabled(QWidget& area)
{
    if (!area.isWindow()) {
        area.setAttribute(Qt::WA_NoMousePropagation, area.isEnabled());
    }
}

} // namespace

void KeepMouseMoves(QWidget& window)
{
    for (QWidget* const control : window.findChildren<QWidget*>()) {
        if (qobject_cast<LinkLabel*>(control) == nullptr) {
            control->setAttribute(Qt::WA_NoMousePropagation);
        }
    }
}

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

HoverArea::HoverArea(QWidget* widget, std::function<void()> handler)
    : QObject(widget)
    , m_handler(std::move(handler))
{
    widget->setMouseTracking(true);
    LetThroughWhileDisabled(*widget);
    widget->installEventFilter(this);
}

bool HoverArea::eventFilter(QObject* watched, QEvent* event)
{
    auto* const area = static_cast<QWidget*>(watched);
    if (event->type() == QEvent::MouseMove && area->isEnabled()) {
        m_handler();
    } else if (event->type() == QEvent::EnabledChange) {
        LetThroughWhileDisabled(*area);
    }
    return QObject::eventFilter(watched, event);
}
