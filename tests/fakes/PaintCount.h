// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QExposeEvent>
#include <QPaintEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>

/// Counts how often the widgets of a name are painted, including widgets made later.
class PaintCount final : public QObject
{
public:
    explicit PaintCount(QString name)
        : m_name(std::move(name))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        paints +=
            event->type() == QEvent::Paint && watched->isWidgetType() && watched->objectName() == m_name;
        return false;
    }

    int paints = 0;

private:
    QString m_name;
};

/// The parts of a widget that have been painted since the construction of this object.
class PaintedRegion final : public QObject
{
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            region += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }

    QRegion region;
};

/// A desktop that exposes a new window only when the program serves events. A window that is painted at a
/// given moment is one for which the program has waited.
class SlowDesktop final : public QObject
{
public:
    SlowDesktop() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Expose || m_isAsking) {
            return false;
        }
        QTimer::singleShot(0, this, [this, window = QPointer(static_cast<QWindow*>(watched))] {
            if (window.isNull()) {
                return;
            }
            QExposeEvent due(QRect(QPoint(), window->size()));
            m_isAsking = true;
            QCoreApplication::sendEvent(window, &due);
            m_isAsking = false;
        });
        return true;
    }

private:
    bool m_isAsking = false;
};
