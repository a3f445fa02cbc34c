// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/ReturnToMain.h"

#include "forms/MainForm.h"

void ReturnToMain(MainForm& main)
{
    main.Enable(true);
    main.TakeFocus();
    main.ActiveForm = QStringLiteral("FrmMain");
}
