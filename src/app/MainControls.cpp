// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainControls.h"

#include "engine/Prayers.h"
#include "forms/Areas.h"

MainControls::MainControls(QWidget& window)
{
    setupUi(&window);
    KeepMouseMoves(window);
    // A .ui file has no stretch. The countdown stands close behind its label; the letters step together
    // rather than shrink.
    for (QLabel* const narrow : {Label3, static_cast<QLabel*>(LblStopLink)}) {
        QFont font = narrow->font();
        font.setStretch(QFont::SemiCondensed);
        narrow->setFont(font);
    }
    for (std::int16_t tab = kPrayers.front().tab; tab <= kPrayers.back().tab; ++tab) {
        const Prayer& prayer = *PrayerOfTab(tab);
        PrayerColumns.push_back(
            {&prayer, window.findChild<LinkLabel*>(prayer.link), window.findChild<QLabel*>(prayer.time)});
    }
}
