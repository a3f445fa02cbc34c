// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Canvas.h"

namespace art {

[[nodiscard]] Sprite Sun(int scale);
[[nodiscard]] Sprite Moon(int scale);

} // namespace art
