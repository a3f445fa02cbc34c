// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace {

constexpr int kCaptionLeft = 8;
constexpr int kCaptionGap = 3;
constexpr double kCornerRadius = 4.0;

void DrawFrame(const QStyleOptionGroupBox& option, QPainter& painter, const QStyle& style)
{
    const int captionHeight = option.fontMetrics.height();
    const int captionWidth = option.fontMetrics.size(Qt::TextShowMnemonic, option.text).width();
    const QRect caption(option.rect.left() + kCaptionLeft, option.rect.top(), captionWidth, captionHeight);

    painter.save();
    if (!option.text.isEmpty()) {
        painter.setClipRegion(QRegion(option.rect) -
                              QRegion(caption.adjusted(-kCaptionGap, 0, kCaptionGap, 0)));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(option.palette.color(QPalette::Mid));
    // Through the middles of the pixels, or the line would be spread over two rows.
    const int middle = captionHeight / 2;
    const QRectF line = QRectF(option.rect).adjusted(0.5, middle + 0.5, -0.5, -0.5);
    painter.drawRoundedRect(line, kCornerRadius, kCornerRadius);
    painter.restore();

    style.drawItemText(&painter, caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic,
                       option.palette, (option.state & QStyle::State_Enabled) != 0, option.text,
                       QPalette::WindowText);
}

} // namespace

WindowStyle::WindowStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const
{
    const auto* const frame = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
    if (control == CC_GroupBox && frame != nullptr && !(frame->subControls & SC_GroupBoxCheckBox)) {
        DrawFrame(*frame, *painter, *this);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QPixmap WindowStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                         const QStyleOption* option) const
{
    return mode == QIcon::Disabled ? pixmap : QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}
