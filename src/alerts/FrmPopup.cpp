// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "alerts/FrmPopup.h"

FrmPopup::FrmPopup(Forms& forms)
    : Form(forms, kName, Qt::Dialog)
{
}

void FrmPopup::ShowPopup(const QString& /*Message*/, std::int16_t /*SecLifeSpan*/) {}
