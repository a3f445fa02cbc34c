// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The folders of Windows hold no pipes: the name stays missing.
[[nodiscard]] inline bool MakePipe(const QString& /*path*/)
{
    return true;
}
