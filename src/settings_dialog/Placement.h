// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QRect>

/// Gives a control its name and place. The mouse pointer stays as it is over a control that has no say in it.
template <typename Control>
Control* Place(Control* control, const char* name, const QRect& place)
{
    control->setObjectName(QLatin1String(name));
    control->setGeometry(place);
    control->setAttribute(Qt::WA_NoMousePropagation);
    return control;
}

[[nodiscard]] inline QGroupBox* PlaceFrame(QWidget* parent, const char* name, const QString& caption,
                                           const QRect& place)
{
    return Place(new QGroupBox(caption, parent), name, place);
}

[[nodiscard]] inline QFrame* PlacePlainFrame(QWidget* parent, const char* name, const QRect& place)
{
    auto* const frame = Place(new QFrame(parent), name, place);
    frame->setFrameShape(QFrame::StyledPanel);
    return frame;
}

inline QLabel* PlaceText(QWidget* parent, const char* name, const QString& caption, const QRect& place)
{
    auto* const label = Place(new QLabel(caption, parent), name, place);
    label->setTextFormat(Qt::PlainText);
    return label;
}

inline void MakeBold(QWidget* control)
{
    QFont bold = control->font();
    bold.setBold(true);
    control->setFont(bold);
}
