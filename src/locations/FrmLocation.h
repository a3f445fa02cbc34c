// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

class DomDocuments;

/// The list of places.
class FrmLocation final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmLocation"};

    FrmLocation(Forms& forms, const DomDocuments& documents);
};
