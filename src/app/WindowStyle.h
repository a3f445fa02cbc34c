// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QProxyStyle>

#include <vector>

/// The style of all windows: Fusion, but the line of a group box runs through the middle of its caption. The
/// windows are laid out to the pixel for that; Fusion draws the caption above the line, and the line over the
/// contents of the box.
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

private:
    void ShareColours(const QStyleOption* option) const;

    mutable std::vector<QPalette> m_colours;
};
