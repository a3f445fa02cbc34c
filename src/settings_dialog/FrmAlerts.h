// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

#include <cstdint>

class DomDocuments;

/// The settings dialog.
class FrmAlerts final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmAlerts"};

    FrmAlerts(Forms& forms, const DomDocuments& documents);

    /// Shows page 1 to 8; any other number shows page 1.
    void SelectTab(std::int16_t tab);
};
