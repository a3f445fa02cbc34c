// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BoxDrawing.h"

#include "forms/Panels.h"

#include <QAbstractItemView>
#include <QPalette>
#include <QStyleOption>

namespace {

QColor LineColour(const QStyleOption& option)
{
    return option.palette.color((option.state & QStyle::State_HasFocus) != 0 ? QPalette::Highlight
                                                                             : QPalette::Mid);
}

void DrawButton(const QStyleOption& option, QPainter& painter)
{
    const bool isDown = (option.state & (QStyle::State_Sunken | QStyle::State_On)) != 0;
    const bool isUnderMouse =
        (option.state & QStyle::State_MouseOver) != 0 && (option.state & QStyle::State_Enabled) != 0;
    QPalette::ColorRole ground = isUnderMouse ? QPalette::Light : QPalette::Button;
    if (isDown) {
        ground = QPalette::Midlight;
    }
    DrawPanel(painter, option.rect, option.palette.brush(ground), LineColour(option));
}

// The focus has a frame of its own around the text.
void DrawCheckMark(const QStyleOption& option, QPainter& painter)
{
    DrawPanel(painter, option.rect, option.palette.base(), option.palette.color(QPalette::Mid));
    if ((option.state & QStyle::State_On) != 0) {
        DrawTick(painter, option.rect, option.palette.color(QPalette::Text));
    }
}

void DrawOptionMark(const QStyleOption& option, QPainter& painter)
{
    DrawPanel(painter, option.rect, option.palette.base(), option.palette.color(QPalette::Mid),
              option.rect.width() / 2.0);
    if ((option.state & QStyle::State_On) != 0) {
        const int gap = option.rect.width() * 2 / 7;
        const QRect dot = option.rect.adjusted(gap, gap, -gap, -gap);
        const QColor colour = option.palette.color(QPalette::Text);
        DrawPanel(painter, dot, colour, colour, dot.width() / 2.0);
    }
}

} // namespace

bool DrawBox(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
             const QWidget* widget)
{
    // At a fractional scale the contents of a list begin beside the line.
    const bool isList = qobject_cast<const QAbstractItemView*>(widget) != nullptr;
    switch (element) {
    case QStyle::PE_PanelLineEdit:
        DrawPanel(painter, option.rect, option.palette.base(), LineColour(option));
        return true;
    case QStyle::PE_Frame:
        DrawPanel(painter, option.rect, isList ? option.palette.base() : QBrush(),
                  option.palette.color(QPalette::Mid));
        return true;
    case QStyle::PE_PanelButtonCommand:
        DrawButton(option, painter);
        return true;
    case QStyle::PE_IndicatorCheckBox:
        DrawCheckMark(option, painter);
        return true;
    case QStyle::PE_IndicatorRadioButton:
        DrawOptionMark(option, painter);
        return true;
    default:
        return false;
    }
}

void DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QStyle& style,
                   const QWidget* widget)
{
    const bool isLevel = option.orientation == Qt::Horizontal;
    const QColor line = LineColour(option);
    const auto drawPart = [&](const QRect& place, QPalette::ColorRole ground) {
        // A vertical bar belongs to a list, whose frame has the outer lines.
        const QRect panel = isLevel ? place : place.adjusted(0, -1, 1, 1);
        DrawPanel(painter, panel, option.palette.brush(ground), line);
    };
    const auto drawButton = [&](QStyle::SubControl part) {
        const QRect place = style.subControlRect(QStyle::CC_ScrollBar, &option, part, widget);
        const bool isDown = (option.state & QStyle::State_Sunken) != 0 && option.activeSubControls == part;
        drawPart(place, isDown ? QPalette::Midlight : QPalette::Button);
        return place;
    };
    const QColor arrow = option.palette.color(QPalette::ButtonText);
    drawPart(option.rect, QPalette::AlternateBase);
    drawButton(QStyle::SC_ScrollBarSlider);
    DrawArrow(painter, drawButton(QStyle::SC_ScrollBarSubLine), isLevel ? Qt::LeftArrow : Qt::UpArrow, arrow);
    DrawArrow(painter, drawButton(QStyle::SC_ScrollBarAddLine), isLevel ? Qt::RightArrow : Qt::DownArrow,
              arrow);
}
