// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QLabel>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>

#include <vector>

/// The style of all windows: Fusion, but boxes, frames, buttons and bars are drawn with lines on whole pixels
/// (BoxDrawing.h), and the line of a group box runs through the middle of its caption. The windows are laid
/// out to the pixel for that; Fusion draws the caption above the line, and the line over the contents of the
/// box.
class WindowStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    WindowStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    /// The texts of check boxes and options begin at the same distance.
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    /// Removes the icons from the buttons of message boxes, also on a desktop that asks for icons.
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;

private:
    void ShareColours(const QStyleOption* option) const;

    mutable std::vector<QPalette> m_colours;
};

/// Sets the style, colours, font and icon of all windows. Call once, before the first window is made.
void SetAppearance();

/// The font of the windows. If the system replaces @p family by a wider font, its letters are narrowed, so
/// that the texts fit their labels.
[[nodiscard]] QFont WindowFont(const QString& family);

/// Returns a picture from the resources, scaled for a screen; a null picture if there is none of that name.
/// @param name of the file at scale 1, without folder and suffix; files "@2x" and "@3x" are used if they
/// exist
/// @param devicePixelRatio of the screen, 1 or more
[[nodiscard]] QPixmap ShippedPicture(const QString& name, double devicePixelRatio);

/// Shows the picture from the resources that has the label's object name, at the resolution of the screen on
/// which the label is painted.
class PictureLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit PictureLabel(QWidget* parent);

protected:
    // The base class would grey the picture in a disabled window.
    void paintEvent(QPaintEvent* event) override;

private:
    void MatchScreen();

    double m_ratio = 0.0;
};
