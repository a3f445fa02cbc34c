// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

#include <array>
#include <vector>

namespace art {

inline constexpr std::array kIconSizes{16, 22, 24, 32, 48, 64, 128, 256};

/// Up to this size the icon is drawn from its simplified geometry.
inline constexpr int kLargestSimplified = 24;

enum class IconDetail {
    Full,
    Simplified,
};

/// The icon, `size` pixels square, with alpha.
[[nodiscard]] QImage Icon(int size);

/// The same geometry as a drawing in Scalable Vector Graphics 1.1.
[[nodiscard]] QByteArray IconAsSvg(IconDetail detail);

/// The icon file of Windows with these pictures, each a square in a PNG file of at most 256 pixels.
[[nodiscard]] QByteArray IconFile(const std::vector<QByteArray>& pngFiles);

} // namespace art
