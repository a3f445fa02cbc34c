// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

#include <cstdint>

/// The small window that carries an alert.
class FrmPopup final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmPopup"};

    explicit FrmPopup(Forms& forms);

    /// @param SecLifeSpan seconds after which the window goes by itself
    void ShowPopup(const QString& Message, std::int16_t SecLifeSpan);
};
