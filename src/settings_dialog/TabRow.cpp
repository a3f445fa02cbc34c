// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/TabRow.h"

#include "forms/Form.h"
#include "forms/Layout.h"
#include "forms/LinkLabel.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/Placement.h"

TabRow::TabRow(DialogContext& context, const std::function<void(std::int16_t)>& select)
{
    const struct
    {
        std::int16_t tab;
        const char* name;
        QString caption;
        int left;
        int width;
    } tabs[] = {
        {1, "LblGeneral", QStringLiteral("General"), 150, 780},
        {2, "LblMobilAlert", QStringLiteral("Mobile Alert"), 1080, 1095},
        {3, "LblFajr", QStringLiteral("Fajr"), 3180, 420},
        {4, "LblShuruq", QStringLiteral("Shuruq"), 3750, 705},
        {5, "LblDuhr", QStringLiteral("Duhr"), 4605, 495},
        {6, "LblAsr", QStringLiteral("Asr"), 5250, 390},
        // The one label of the row without the prefix.
        {7, "Maghrib", QStringLiteral("Maghrib"), 5790, 795},
        {8, "LblIsha", QStringLiteral("Isha"), 6735, 450},
    };
    Form& dialog = context.Dialog();
    for (const auto& entry : tabs) {
        auto* const label = new LinkLabel(entry.caption, &dialog);
        label->setObjectName(QLatin1String(entry.name));
        label->setGeometry(TwipsRect(entry.left, 90, entry.width, 255));
        label->OnMouseMove([&dialog] { dialog.Handle([&dialog] { dialog.SetHandPointer(); }); });
        label->OnClick([select, tab = entry.tab] { select(tab); });
    }
    PlaceText(&dialog, "Label9", QStringLiteral("Prayers:"), TwipsRect(2355, 75, 765, 255));
}
