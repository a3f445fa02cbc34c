// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProcessorTime.h"
#include "platform/TimeZone.h"

#include <ctime>

double ProcessorMilliseconds()
{
    std::timespec used = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

void ReadTimeZone()
{
    ::tzset();
}
