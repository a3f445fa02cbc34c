// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QPixmap>

/// Gives all windows their style, colours, font and icon. Once, before the first window.
void SetAppearance();

/// A picture of the program's resources at the pixels of a screen.
/// @param name of the picture at scale 1, without folder and ending; larger ones are used where they exist
/// @param devicePixelRatio of the screen, 1 or more
[[nodiscard]] QPixmap ShippedPicture(const QString& name, double devicePixelRatio);

/// Shows the picture of the program's resources that has the label's object name, at the pixels of the screen
/// on which it is painted.
class PictureLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit PictureLabel(QWidget* parent);

protected:
    // Drawn here: the base class greys a picture whose window takes no input.
    void paintEvent(QPaintEvent* event) override;

private:
    void MatchScreen();

    double m_ratio = 0.0;
};
