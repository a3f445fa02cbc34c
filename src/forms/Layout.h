// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

class QWidget;

/// Windows are laid out in twips, 15 to the pixel.
constexpr int kTwipsPerPixel = 15;

[[nodiscard]] constexpr int Pixels(int twips)
{
    return twips / kTwipsPerPixel;
}

[[nodiscard]] constexpr QRect TwipsRect(int left, int top, int width, int height)
{
    return {Pixels(left), Pixels(top), Pixels(width), Pixels(height)};
}
