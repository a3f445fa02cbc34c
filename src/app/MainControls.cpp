// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainControls.h"

#include "engine/Prayers.h"
#include "forms/Areas.h"
#include "forms/Letters.h"

MainControls::MainControls(QWidget& window)
{
    setupUi(&window);
    KeepMouseMoves(window);
    // Narrow letters leave room for the countdown and are easier to read than small ones.
    NarrowLetters(*Label3);
    NarrowLetters(*LblStopLink);
    for (const Prayer& prayer : kPrayers) {
        if (PrayerOfTab(prayer.tab) == &prayer) {
            PrayerColumns.push_back(
                {&prayer, window.findChild<LinkLabel*>(prayer.link), window.findChild<QLabel*>(prayer.time)});
        }
    }
}
