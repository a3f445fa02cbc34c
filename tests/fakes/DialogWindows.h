// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "alerts/FrmPopup.h"
#include "forms/Forms.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "locations/FrmWait.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"

#include <memory>

/// Registers all windows that the main window opens. All arguments must outlive the windows.
inline void RegisterDialogWindows(Forms& forms, MobileSignup& signup)
{
    forms.Register(FrmAlerts::kName,
                   [&forms, &signup] { return std::make_unique<FrmAlerts>(forms, signup); });
    forms.Register(FrmLocation::kName, [&forms] { return std::make_unique<FrmLocation>(forms); });
    forms.Register(FrmNewLoc::kName, [&forms] { return std::make_unique<FrmNewLoc>(forms); });
    forms.Register(FrmWait::kName, [&forms] { return std::make_unique<FrmWait>(forms); });
    forms.Register(FrmPopup::kName, [&forms] { return std::make_unique<FrmPopup>(forms); });
}
