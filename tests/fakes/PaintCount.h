// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

/// Counts how often the window of a name is painted, also one that is only made while this looks.
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
