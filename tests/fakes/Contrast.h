// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// Relative luminance, 0 to 1, after the Web Content Accessibility Guidelines 2.1.
[[nodiscard]] inline double Luminance(const QColor& colour)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// Contrast ratio of the same guidelines, 1 to 21.
[[nodiscard]] inline double Contrast(const QColor& one, const QColor& other)
{
    const auto [dark, bright] = std::minmax({Luminance(one), Luminance(other)});
    return (bright + 0.05) / (dark + 0.05);
}
