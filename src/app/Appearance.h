// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QPixmap>

/// Sets the style, colours, font and icon of all windows. Call once, before the first window is made.
void SetAppearance();

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
