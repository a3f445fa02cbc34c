// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

/// Asks for patience while a request runs.
class FrmWait final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmWait"};

    explicit FrmWait(Forms& forms);
};
