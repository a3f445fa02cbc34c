// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ProcessorTime.h"
#include "platform/TimeZone.h"

#include <windows.h>

#include <ctime>

namespace {

double Milliseconds(const FILETIME& time)
{
    constexpr double kPerMillisecond = 1e4;
    constexpr double kHigh = 4294967296.0;
    return (kHigh * time.dwHighDateTime + time.dwLowDateTime) / kPerMillisecond;
}

} // namespace

// In steps of the scheduler's clock, up to 16 ms.
double ProcessorMilliseconds()
{
    FILETIME creation = {};
    FILETIME end = {};
    FILETIME kernel = {};
    FILETIME user = {};
    ::GetThreadTimes(::GetCurrentThread(), &creation, &end, &kernel, &user);
    return Milliseconds(kernel) + Milliseconds(user);
}

void ReadTimeZone()
{
    ::_tzset();
}
