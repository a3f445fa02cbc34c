// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace art {

/// Scenes of the day and of the night at one scale, put together as the sky picture puts them together, with
/// the banner and the icons on a light and on a dark ground: one sheet for comparison.
[[nodiscard]] QImage ContactSheet(int scale);

} // namespace art
