// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmWait.h"

#include "forms/Forms.h"
#include "ui_FrmWait.h"

// No close button: closing the window would stop nothing.
FrmWait::FrmWait(Forms& forms)
    : Form(forms, kName, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
{
    Ui::FrmWait ui;
    ui.setupUi(this);
    CentreOver(forms.Loaded(Variables().ActiveForm));
}
