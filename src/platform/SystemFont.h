// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

/// Makes the fonts that are shipped with the program available to it, on a system without Liberation Sans.
/// Call it before the first font is chosen.
void LoadShippedFonts();

/// The font of that family, set up so that texts are as wide as the letters are designed.
[[nodiscard]] QFont SystemFont(const QString& family);
