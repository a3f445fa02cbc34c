// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/HoverArea.h"

#include <QEvent>
#include <QWidget>

HoverArea::HoverArea(QWidget* widget, std::function<void()> handler)
    : QObject(widget)
    , m_handler(std::move(handler))
{
    widget->setMouseTracking(true);
    widget->installEventFilter(this);
}

bool HoverArea::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseMove && static_cast<QWidget*>(watched)->isEnabled()) {
        m_handler();
    }
    return QObject::eventFilter(watched, event);
}
