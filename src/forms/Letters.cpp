// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Letters.h"

#include <QWidget>

QFont Narrowed(QFont font, int percent)
{
    const int width = font.stretch() == QFont::AnyStretch ? int{QFont::Unstretched} : font.stretch();
    font.setStretch(width * percent / 100);
    return font;
}

void NarrowLetters(QWidget& control)
{
    control.setFont(Narrowed(control.font(), QFont::SemiCondensed));
}
