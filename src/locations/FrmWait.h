// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

/// Asks the user to wait while a request runs; centred over the window that is ActiveForm.
class FrmWait final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmWait"};

    explicit FrmWait(Forms& forms);

protected:
    void OnGotFocus() override { Refresh(); }
};
