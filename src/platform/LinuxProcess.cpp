// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemProcess.h"

#include <cstdlib>

void PrepareProcess() {}

void EndAtOnce(int exitCode)
{
    std::_Exit(exitCode);
}
