// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Appearance.h"

#include "app/BoxDrawing.h"
#include "forms/Letters.h"
#include "instruments/PngFile.h"
#include "platform/SystemFont.h"

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLargestScale = 3;

// Every desktop gets the same colours. Texts and links are chosen for this background; on a desktop's dark
// background links would be unreadable.
QPalette Colours()
{
    const QColor ground(0xf5, 0xf2, 0xec);
    const QColor ink(0x22, 0x24, 0x3c);
    const QColor greyed(0x62, 0x62, 0x68);
    const QColor accent(0x3b, 0x34, 0x78);
    QPalette colours(QColor(0xea, 0xe5, 0xdb), ground);
    colours.setColor(QPalette::Mid, QColor(0xb4, 0xac, 0x9c));
    colours.setColor(QPalette::Midlight, QColor(0xd6, 0xcf, 0xc1));
    colours.setColor(QPalette::WindowText, ink);
    colours.setColor(QPalette::Text, ink);
    colours.setColor(QPalette::ButtonText, ink);
    colours.setColor(QPalette::Base, QColor(0xff, 0xfe, 0xfb));
    colours.setColor(QPalette::AlternateBase, QColor(0xf8, 0xf5, 0xef));
    colours.setColor(QPalette::PlaceholderText, greyed);
    colours.setColor(QPalette::Highlight, accent);
    colours.setColor(QPalette::HighlightedText, Qt::white);
    colours.setColor(QPalette::Link, QColor(0x00, 0x3c, 0xb4));
    colours.setColor(QPalette::ToolTipBase, QColor(0xff, 0xfd, 0xf0));
    colours.setColor(QPalette::ToolTipText, ink);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colours.setColor(QPalette::Disabled, role, greyed);
    }
    // A disabled box or button is an outline on the page.
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Button}) {
        colours.setColor(QPalette::Disabled, role, ground);
    }
    return colours;
}

QIcon WindowIcon()
{
    // All sizes are decoded at the start and sent with each window, so there is none of 256 pixels: it would
    // take three quarters of that work. A desktop that shows larger icons takes them from the desktop file.
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128}) {
        icon.addPixmap(QPixmap::fromImage(ReadPng(QStringLiteral(":/icons/duskbeacon-%1.png").arg(size))));
    }
    return icon;
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
    if (DrawBox(element, *option, *painter, widget)) {
        return;
    }
    ShareColours(option);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const
{
    if (option != nullptr && DrawFrameLine(element, *option, *painter)) {
        return;
    }
    ShareColours(option);
    QProxyStyle::drawControl(element, option, painter, widget);
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const
{
    if (option != nullptr && DrawComplexBox(control, *option, *painter, *this, widget)) {
        return;
    }
    ShareColours(option);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
    // Qt counts the space from the last pixel of a check box, but from the first one behind an option.
    return metric == PM_RadioButtonLabelSpacing ? pixels - 1 : pixels;
}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* data) const
{
    return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0
                                                       : QProxyStyle::styleHint(hint, option, widget, data);
}

void SetAppearance()
{
    // The layout is fixed to the pixel, so the style is fixed too. Qt has Fusion on every platform.
    QApplication::setStyle(new WindowStyle); // the application owns it
    QApplication::setPalette(Colours());
    LoadShippedFonts();
    // Set explicitly: Qt's default family depends on the installed fonts.
    QApplication::setFont(WindowFont(QStringLiteral("Liberation Sans")));
    QApplication::setWindowIcon(WindowIcon());
}

QFont WindowFont(const QString& family)
{
    QFont font = SystemFont(family);
    font.setPixelSize(12);
    // The width of the text in Liberation Sans, for which the windows are laid out.
    constexpr int kUsualWidth = 107;
    constexpr int kNarrowestPercent = 60;
    const QString text = QStringLiteral("Time till next prayer:");
    // Found by trial: the width of a text is not proportional to the stretch of its letters.
    int percent = 100;
    QFont fitting = font;
    while (QFontMetrics(fitting).horizontalAdvance(text) > kUsualWidth && percent > kNarrowestPercent) {
        fitting = Narrowed(font, --percent);
    }
    return fitting;
}

QPixmap ShippedPicture(const QString& name, double devicePixelRatio)
{
    const QString path = QStringLiteral(":/pictures/") + name;
    const QImage plain = ReadPng(path + QStringLiteral(".png"));
    QImage picture;
    for (int scale = std::min(static_cast<int>(std::ceil(devicePixelRatio)), kLargestScale);
         picture.isNull() && scale > 1; --scale) {
        picture = ReadPng(path + QStringLiteral("@%1x.png").arg(scale));
    }
    if (picture.isNull()) {
        picture = plain;
    }
    if (picture.isNull()) {
        return {};
    }
    // Scaled here, with smoothing: a label would scale the picture by leaving out rows.
    picture =
        picture.scaled(plain.size() * devicePixelRatio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(devicePixelRatio);
    return QPixmap::fromImage(picture);
}

PictureLabel::PictureLabel(QWidget* parent)
    : QLabel(parent)
{
    // Load the picture before the first paint event: a screen reader may ask earlier whether the label has
    // one.
    connect(this, &QObject::objectNameChanged, this, &PictureLabel::MatchScreen);
}

void PictureLabel::MatchScreen()
{
    if (m_ratio != devicePixelRatioF()) {
        m_ratio = devicePixelRatioF();
        setPixmap(ShippedPicture(objectName(), m_ratio));
    }
}

void PictureLabel::paintEvent(QPaintEvent* /*event*/)
{
    MatchScreen();
    QPainter(this).drawPixmap(contentsRect().topLeft(), pixmap());
}
