// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// For the many names and paths of a test, each short.
[[nodiscard]] inline QString Q(const char* text)
{
    return QString::fromUtf8(text);
}
