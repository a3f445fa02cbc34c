// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

class QWidget;

/// The font with its letters narrowed to a percentage of their width.
[[nodiscard]] QFont Narrowed(QFont font, int percent);

/// Narrows the letters of a control. A .ui file has no element for that.
void NarrowLetters(QWidget& control);
