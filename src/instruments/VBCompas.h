// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class RegionalSettings;

/// A compass card: north up, east to the right, a line from the centre towards the Qibla, and the angle as
/// text below it. All geometry is in twips, at any scale of the screen.
class VBCompas final : public QWidget
{
    Q_OBJECT

public:
    struct Shape
    {
        double Left;
        double Top;
        double Width;
        double Height;
    };
    struct Line
    {
        double X1;
        double Y1;
        double X2;
        double Y2;
    };

    /// Points north.
    /// @param region gives the decimal sign of the angle; must outlive the control
    VBCompas(const RegionalSettings& region, QWidget* parent);

    /// Turns the pointer. An angle that can't be rounded down to a 16-bit whole number is ignored.
    /// @param Angle degrees clockwise from north, also negative or beyond 360
    void SetNewAngle(const double& Angle);

    /// The frame of the card, in twips of the control.
    [[nodiscard]] const Shape& Circle() const { return ShpCircle; }
    /// The line, from the centre to its tip, in twips of the control.
    [[nodiscard]] const Line& Pointer() const { return LPointer; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void DrawPointer(const double& Angle);
    void PointTo(double x, double y, const QString& caption);

    const RegionalSettings& m_region;
    Shape ShpCircle{360.0, 240.0, 855.0, 975.0};
    Line LPointer{765.0, 720.0, 1140.0, 330.0};
    QLabel* LblAngle = nullptr;
    /// The initial angle. Intended: it does not follow the pointer.
    double m_angle = 0.0;
};
