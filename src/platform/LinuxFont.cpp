// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemFont.h"

// The package depends on the font.
void LoadShippedFonts() {}

QFont SystemFont(const QString& family)
{
    return QFont(family);
}
