// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <ctime>

/// What this thread has taken of a processor's time, in milliseconds: what else goes on costs nothing of it.
[[nodiscard]] inline double ProcessorMilliseconds()
{
    std::timespec used = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}
