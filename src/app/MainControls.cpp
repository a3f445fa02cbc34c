// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainControls.h"

#include "engine/Prayers.h"
#include "forms/Areas.h"

MainControls::MainControls(QWidget& window)
{
    setupUi(&window);
    KeepMouseMoves(window);
    // A .ui file can't set the stretch of a font. Narrow letters leave room for the countdown and are easier
    // to read than small ones.
    for (QLabel* const narrow : {Label3, static_cast<QLabel*>(LblStopLink)}) {
        QFont font = narrow->font();
        font.setStretch(QFont::SemiCondensed);
        narrow->setFont(font);
    }
    for (const Prayer& prayer : kPrayers) {
        if (PrayerOfTab(prayer.tab) == &prayer) {
            PrayerColumns.push_back(
                {&prayer, window.findChild<LinkLabel*>(prayer.link), window.findChild<QLabel*>(prayer.time)});
        }
    }
}
