// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace art {

inline constexpr auto kBannerFamily = "Liberation Sans";

/// The banner with the program's name, 129 by 89 at scale 1. Needs a QGuiApplication for the lettering, and
/// throws std::runtime_error where the family `kBannerFamily` is not installed.
[[nodiscard]] QImage Banner(int scale);

} // namespace art
