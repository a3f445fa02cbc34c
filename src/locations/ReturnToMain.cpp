// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/ReturnToMain.h"

#include "forms/MainForm.h"
#include "support/RuntimeError.h"

void ReturnToMain(MainForm& main)
{
    main.Enable(true);
    try {
        main.TakeFocus();
    } catch (const RuntimeError& error) {
        // A main window that is hidden, in the tray or before its first show, can't take the focus. Alerts
        // depend on its being named all the same.
        if (error.Number() != ErrorNumber::kInvalidCall) {
            throw;
        }
    }
    main.ActiveForm = QStringLiteral("FrmMain");
}
