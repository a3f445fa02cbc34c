// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Palette.h"

#include <QSize>

class QPainter;

namespace art {

/// Size of the skies and of the landscape at scale 1.
inline constexpr QSize kScene{273, 125};

/// Mountains, hills, a town with a mosque, palms and a meadow, over the lowest quarter of `kScene`.
void DrawLandscape(QPainter& painter, const LandscapeColours& colours);

} // namespace art
