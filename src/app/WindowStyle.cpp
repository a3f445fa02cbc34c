// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

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
    // At half pixels; otherwise antialiasing spreads the line over two rows.
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

// Fusion caches its drawings, and the keys, which contain the number of the palette, are never freed. Each
// window that opens or is disabled makes palettes with new numbers. Equal palettes share one here; otherwise
// memory would grow with each dialog.
void WindowStyle::ShareColours(const QStyleOption* option) const
{
    constexpr std::size_t kMostPalettes = 16;
    if (option == nullptr) {
        return;
    }
    auto shared = std::find(m_colours.begin(), m_colours.end(), option->palette);
    if (shared == m_colours.end()) {
        if (m_colours.size() == kMostPalettes) {
            m_colours.erase(m_colours.begin());
        }
        shared = m_colours.insert(m_colours.end(), option->palette);
    }
    // The caller has made the option for this drawing only.
    QPalette& palette = const_cast<QStyleOption*>(option)->palette;
    const QPalette::ColorGroup group = palette.currentColorGroup();
    palette = *shared;
    palette.setCurrentColorGroup(group);
}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const
{
    ShareColours(option);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const
{
    ShareColours(option);
    QProxyStyle::drawControl(element, option, painter, widget);
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const
{
    const auto* const frame = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
    if (control == CC_GroupBox && frame != nullptr && !(frame->subControls & SC_GroupBoxCheckBox)) {
        DrawFrame(*frame, *painter, *this);
        return;
    }
    ShareColours(option);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}
