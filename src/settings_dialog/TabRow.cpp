// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/TabRow.h"

#include "engine/Prayers.h"
#include "forms/Form.h"
#include "forms/Layout.h"
#include "forms/LinkLabel.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/Placement.h"

TabRow::TabRow(DialogContext& context, const std::function<void(std::int16_t)>& select)
{
    Form& dialog = context.Dialog();
    const auto place = [&](std::int16_t tab, QLatin1String name, const QString& caption, int left,
                           int width) {
        auto* const label = new LinkLabel(caption, &dialog);
        label->setObjectName(name);
        label->setGeometry(TwipsRect(left, 90, width, 255));
        label->OnMouseMove([&dialog] { dialog.Handle([&dialog] { dialog.SetHandPointer(); }); });
        label->OnClick([select, tab] { select(tab); });
    };
    place(1, QLatin1String("LblGeneral"), QStringLiteral("General"), 150, 780);
    place(2, QLatin1String("LblMobilAlert"), QStringLiteral("Mobile Alert"), 1080, 1095);
    constexpr int kGap = 150;
    constexpr int kWidths[] = {420, 705, 495, 390, 795, 450};
    std::int16_t tab = kPrayers.front().tab;
    int left = 3180;
    for (const int width : kWidths) {
        const Prayer& prayer = *PrayerOfTab(tab);
        place(tab++, prayer.tabLabel, prayer.caption, left, width);
        left += width + kGap;
    }
    PlaceText(&dialog, "Label9", QStringLiteral("Prayers:"), TwipsRect(2355, 75, 765, 255));
}
