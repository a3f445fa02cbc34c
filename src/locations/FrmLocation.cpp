// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmLocation.h"

FrmLocation::FrmLocation(Forms& forms, const DomDocuments& /*documents*/)
    : Form(forms, kName, Qt::Window)
{
}
