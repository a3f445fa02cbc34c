// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace art {

[[nodiscard]] QImage DaySky(int scale);
/// The gradient of the day sky in darker colours, with faint stars.
[[nodiscard]] QImage NightSky(int scale);

} // namespace art
