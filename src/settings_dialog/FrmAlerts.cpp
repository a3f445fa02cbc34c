// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/FrmAlerts.h"

FrmAlerts::FrmAlerts(Forms& forms, const DomDocuments& /*documents*/)
    : Form(forms, kName, Qt::Window)
{
}

void FrmAlerts::SelectTab(std::int16_t /*tab*/) {}
