// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/HoverArea.h"

#include <QEvent>
#include <QWidget>

namespace {

// Over a disabled area the mouse is over whatever lies behind it.
void LetThroughWhileDisabled(QWidget& area)
{
    if (!area.isWindow()) {
        area.setAttribute(Qt::WA_NoMousePropagation, area.isEnabled());
    }
}

} // namespace

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
