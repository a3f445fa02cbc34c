// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/VBCompas.h"

#include "instruments/QuietEnd.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// Intended: cut to six digits, on which the last pixel of the pointer's tip depends.
constexpr double kPi = 3.14159;
// Twips by which the pointer is longer than half the height of the frame.
constexpr double kOvershoot = 3.0;

constexpr double kTwipsPerPixel = 15.0;
constexpr QRgb kCardColour = 0xfffffdf6;
constexpr QRgb kRimColour = 0xff3b3478;
constexpr QRgb kPointerColour = 0xffb03a2e;
constexpr double kRimWidth = 1.2 * kTwipsPerPixel;
constexpr double kPointerWidth = 2.0 * kTwipsPerPixel;

QLabel* Letter(QWidget* parent, const char* name, const QString& caption, const QRect& place)
{
    auto* const label = new QLabel(caption, parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setGeometry(place);
    return label;
}

} // namespace

VBCompas::VBCompas(const RegionalSettings& region, QWidget* parent)
    : QWidget(parent)
    , m_region(region)
{
    resize(102, 117);
    Letter(this, "LblNorth", QStringLiteral("N"), {48, 0, 9, 17});
    Letter(this, "LblEast", QStringLiteral("E"), {88, 40, 9, 17});
    Letter(this, "LblSouth", QStringLiteral("S"), {48, 80, 9, 17});
    Letter(this, "LblWest", QStringLiteral("W"), {8, 40, 17, 17});
    LblAngle = Letter(this, "LblAngle", QStringLiteral("Angle: "), {8, 96, 89, 17});
    DrawPointer(m_angle);
}

void VBCompas::SetNewAngle(const double& Angle)
{
    DrawPointer(Angle);
}

void VBCompas::DrawPointer(const double& Angle)
{
    EndQuietly([&] {
        const std::int16_t a = ToInteger16(Int(Angle));
        const double length = ShpCircle.Height / 2.0 + kOvershoot;
        LPointer.X1 = ShpCircle.Left + ShpCircle.Width / 2.0;
        LPointer.Y1 = ShpCircle.Top + ShpCircle.Height / 2.0;
        // Intended: the test is on the whole degree, so that the pointer is exactly east from 90 up to 91.
        switch (a) {
        case 0:
        case 360:
            PointTo(LPointer.X1, LPointer.Y1 - length, QStringLiteral("Angle: North"));
            break;
        case 90:
            PointTo(LPointer.X1 + length, LPointer.Y1, QStringLiteral("Angle: East"));
            break;
        case 180:
            PointTo(LPointer.X1, LPointer.Y1 + length, QStringLiteral("Angle: South"));
            break;
        case 270:
            PointTo(LPointer.X1 - length, LPointer.Y1, QStringLiteral("Angle: West"));
            break;
        default: {
            const double r = Angle * kPi / 180.0;
            PointTo(LPointer.X1 + std::sin(r) * length, LPointer.Y1 - std::cos(r) * length,
                    QStringLiteral("Angle: ") + ToText(Angle, m_region.UserLocale()));
            break;
        }
        }
    });
}

void VBCompas::PointTo(double x, double y, const QString& caption)
{
    LPointer.X2 = x;
    LPointer.Y2 = y;
    LblAngle->setText(caption);
    setAccessibleName(caption);
    update();
}

void VBCompas::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 / kTwipsPerPixel, 1.0 / kTwipsPerPixel);

    // In a frame that is not square the circle is in the middle, and its diameter is the shorter side.
    const QPointF centre(ShpCircle.Left + ShpCircle.Width / 2.0, ShpCircle.Top + ShpCircle.Height / 2.0);
    const double radius = std::min(ShpCircle.Width, ShpCircle.Height) / 2.0;
    painter.setPen(QPen(QColor(kRimColour), kRimWidth));
    painter.setBrush(QColor(kCardColour));
    painter.drawEllipse(centre, radius, radius);

    painter.setPen(QPen(QColor(kPointerColour), kPointerWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(LPointer.X1, LPointer.Y1), QPointF(LPointer.X2, LPointer.Y2));
}
