// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/RuntimeError.h"

/// Runs a routine of an instrument. A failure ends the routine and is not reported, since the instruments are
/// decoration.
template <typename Routine>
void EndQuietly(const Routine& routine)
{
    try {
        routine();
    } catch (const RuntimeError&) {
    }
}
