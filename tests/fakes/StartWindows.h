// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/DlgStart.h"
#include "app/FrmMain.h"
#include "forms/Forms.h"

#include <memory>

/// Registers the main window and the splash that its load shows. All arguments must outlive @p forms.
inline void RegisterStartWindows(Forms& forms, Calculation& calculation)
{
    forms.Register(DlgStart::kName, [&forms] { return std::make_unique<DlgStart>(forms); });
    forms.Register(FrmMain::kName,
                   [&forms, &calculation] { return std::make_unique<FrmMain>(forms, calculation); });
}
