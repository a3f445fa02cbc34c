// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/ReturnToMain.h"

#include "forms/Forms.h"

void ReturnToMain(Forms& forms)
{
    MainForm& main = forms.Main();
    main.Enable(true);
    main.TakeFocus();
    forms.Variables().ActiveForm = MainForm::kName;
}
