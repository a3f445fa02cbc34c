// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/RuntimeError.h"

/// Runs a routine of an instrument. What fails in it ends it and nothing else: the instruments are ornaments,
/// and a day without one is no reason to speak.
template <typename Routine>
void EndQuietly(const Routine& routine)
{
    try {
        routine();
    } catch (const RuntimeError&) {
    }
}
