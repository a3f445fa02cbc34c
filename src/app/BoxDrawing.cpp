// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BoxDrawing.h"

#include "forms/Panels.h"

#include <QAbstractItemView>
#include <QFrame>
#include <QPainter>
#include <QPalette>
#include <QPushButton>
#include <QStyleOption>

namespace {

constexpr int kCaptionLeft = 8;
constexpr int kCaptionGap = 3;

QColor LineColour(const QStyleOption& option)
{
    return option.palette.color((option.state & QStyle::State_HasFocus) != 0 ? QPalette::Highlight
                                                                             : QPalette::Mid);
}

void DrawFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    // At a fractional scale there is a gap between the line and the contents of a list: fill it.
    const bool isList = qobject_cast<const QAbstractItemView*>(widget) != nullptr;
    DrawPanel(painter, option.rect, isList ? option.palette.base() : QBrush(), LineColour(option));
}

// The line around the text of a link, a check box or an option.
void DrawFocusRect(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    constexpr int kGap = 2;
    // A button shows the focus by its own line, a selected row of a list by its ground.
    const bool isMarkedOtherwise =
        (option.state & QStyle::State_Selected) != 0 || qobject_cast<const QPushButton*>(widget) != nullptr;
    if ((option.state & QStyle::State_KeyboardFocusChange) == 0 || isMarkedOtherwise) {
        return;
    }
    QRect rect = option.rect.adjusted(-kGap, -kGap, kGap, kGap);
    if (widget != nullptr) {
        rect &= widget->rect();
    }
    DrawPanel(painter, rect, Qt::NoBrush, option.palette.color(QPalette::Highlight));
}

// The ground of a control that can be pressed: its own, under the mouse, or while it is held.
QBrush Ground(const QStyleOption& option, QPalette::ColorRole own, QPalette::ColorRole underMouse,
              QStyle::State held = QStyle::State_Sunken)
{
    if ((option.state & held) != 0) {
        return option.palette.midlight();
    }
    const bool isUnderMouse =
        (option.state & QStyle::State_MouseOver) != 0 && (option.state & QStyle::State_Enabled) != 0;
    return option.palette.brush(isUnderMouse ? underMouse : own);
}

QBrush ButtonGround(const QStyleOption& option)
{
    return Ground(option, QPalette::Button, QPalette::Light, QStyle::State_Sunken | QStyle::State_On);
}

// The ground of a check box is nearly as light as that of a button under the mouse.
QBrush IndicatorGround(const QStyleOption& option)
{
    return Ground(option, QPalette::Base, QPalette::Button);
}

void DrawButton(const QStyleOption& option, QPainter& painter)
{
    DrawPanel(painter, option.rect, ButtonGround(option), LineColour(option));
}

// Not in the colour of the focus, which has a frame of its own around the text.
void DrawCheckIndicator(const QStyleOption& option, QPainter& painter)
{
    DrawPanel(painter, option.rect, IndicatorGround(option), option.palette.color(QPalette::Mid));
    if ((option.state & QStyle::State_On) != 0) {
        DrawCheckMark(painter, option.rect, option.palette.color(QPalette::Text));
    }
}

void DrawOptionIndicator(const QStyleOption& option, QPainter& painter)
{
    DrawPanel(painter, option.rect, IndicatorGround(option), option.palette.color(QPalette::Mid),
              option.rect.width() / 2.0);
    if ((option.state & QStyle::State_On) != 0) {
        const int gap = option.rect.width() * 2 / 7;
        const QRect dot = option.rect.adjusted(gap, gap, -gap, -gap);
        const QColor colour = option.palette.color(QPalette::Text);
        DrawPanel(painter, dot, colour, colour, dot.width() / 2.0);
    }
}

void DrawGroupBox(const QStyleOptionGroupBox& option, QPainter& painter, const QStyle& style)
{
    const int captionHeight = option.fontMetrics.height();
    const int captionWidth = option.fontMetrics.size(Qt::TextShowMnemonic, option.text).width();
    const QRect caption(option.rect.left() + kCaptionLeft, option.rect.top(), captionWidth, captionHeight);

    painter.save();
    if (!option.text.isEmpty()) {
        painter.setClipRegion(QRegion(option.rect) -
                              QRegion(caption.adjusted(-kCaptionGap, 0, kCaptionGap, 0)));
    }
    DrawPanel(painter, option.rect.adjusted(0, captionHeight / 2, 0, 0), Qt::NoBrush,
              option.palette.color(QPalette::Mid));
    painter.restore();

    style.drawItemText(&painter, caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic,
                       option.palette, (option.state & QStyle::State_Enabled) != 0, option.text,
                       QPalette::WindowText);
}

void DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QStyle& style,
                   const QWidget* widget)
{
    const bool isHorizontal = option.orientation == Qt::Horizontal;
    const QColor line = LineColour(option);
    const auto drawPart = [&](const QRect& rect, const QBrush& fill) {
        // A vertical bar belongs to a list, whose frame has the outer lines.
        const QRect panel = isHorizontal ? rect : rect.adjusted(0, -1, 1, 1);
        DrawPanel(painter, panel, fill, line);
    };
    const auto drawButton = [&](QStyle::SubControl part) {
        const QRect rect = style.subControlRect(QStyle::CC_ScrollBar, &option, part, widget);
        drawPart(rect, option.activeSubControls == part ? ButtonGround(option) : option.palette.button());
        return rect;
    };
    const QColor arrow = option.palette.color(QPalette::ButtonText);
    drawPart(option.rect, option.palette.alternateBase());
    drawButton(QStyle::SC_ScrollBarSlider);
    DrawArrow(painter, drawButton(QStyle::SC_ScrollBarSubLine), isHorizontal ? Qt::LeftArrow : Qt::UpArrow,
              arrow);
    DrawArrow(painter, drawButton(QStyle::SC_ScrollBarAddLine), isHorizontal ? Qt::RightArrow : Qt::DownArrow,
              arrow);
}

void DrawComboBox(const QStyleOptionComboBox& option, QPainter& painter, const QStyle& style,
                  const QWidget* widget)
{
    DrawButton(option, painter);
    DrawArrow(painter, style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, widget),
              Qt::DownArrow, option.palette.color(QPalette::ButtonText));
}

} // namespace

bool DrawBox(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
             const QWidget* widget)
{
    switch (element) {
    case QStyle::PE_PanelLineEdit:
        DrawPanel(painter, option.rect, option.palette.base(), LineColour(option));
        return true;
    case QStyle::PE_Frame:
        DrawFrame(option, painter, widget);
        return true;
    case QStyle::PE_FrameFocusRect:
        DrawFocusRect(option, painter, widget);
        return true;
    case QStyle::PE_PanelTipLabel:
        DrawPanel(painter, option.rect, option.palette.toolTipBase(), option.palette.color(QPalette::Mid));
        return true;
    case QStyle::PE_PanelButtonCommand:
        DrawButton(option, painter);
        return true;
    case QStyle::PE_IndicatorCheckBox:
        DrawCheckIndicator(option, painter);
        return true;
    case QStyle::PE_IndicatorRadioButton:
        DrawOptionIndicator(option, painter);
        return true;
    default:
        return false;
    }
}

bool DrawFrameLine(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter)
{
    const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (element != QStyle::CE_ShapedFrame || frame == nullptr ||
        (frame->frameShape != QFrame::HLine && frame->frameShape != QFrame::VLine)) {
        return false;
    }
    const Qt::Edge edge = frame->frameShape == QFrame::HLine ? Qt::TopEdge : Qt::LeftEdge;
    DrawEdge(painter, frame->rect, edge, frame->palette.color(QPalette::Mid));
    return true;
}

bool DrawComplexBox(QStyle::ComplexControl control, const QStyleOptionComplex& option, QPainter& painter,
                    const QStyle& style, const QWidget* widget)
{
    const auto* const group = qstyleoption_cast<const QStyleOptionGroupBox*>(&option);
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
    const auto* const list = qstyleoption_cast<const QStyleOptionComboBox*>(&option);
    if (control == QStyle::CC_GroupBox && group != nullptr &&
        !(group->subControls & QStyle::SC_GroupBoxCheckBox)) {
        DrawGroupBox(*group, painter, style);
    } else if (control == QStyle::CC_ScrollBar && bar != nullptr) {
        DrawScrollBar(*bar, painter, style, widget);
    } else if (control == QStyle::CC_ComboBox && list != nullptr) {
        DrawComboBox(*list, painter, style, widget);
    } else {
        return false;
    }
    return true;
}
