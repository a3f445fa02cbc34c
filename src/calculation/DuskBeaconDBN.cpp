// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/DuskBeaconDBN.h"

#include "calculation/Calculator.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#pragma GCC visibility push(default)

namespace {

// One state for the whole process, as the interface of the module says.
calculation::Calculator calculator;

} // namespace

extern "C" {

void SetHorParams(int16_t latitude, int16_t longitude, int16_t offset, int16_t day, int16_t month,
                  int16_t year)
{
    calculator.SetHorParams({latitude, longitude}, offset, day, month, year);
}

void SetHorTemkin(int16_t margin1, int16_t margin2, int16_t margin3, int16_t margin4, int16_t margin5,
                  int16_t margin6, int16_t margin7, int16_t margin8, int16_t margin9, int16_t margin10)
{
    calculator.SetHorTemkin(
        {margin1, margin2, margin3, margin4, margin5, margin6, margin7, margin8, margin9, margin10});
}

void SetHorAngle(int16_t fajr, int16_t /*second*/, int16_t /*third*/, int16_t isha)
{
    calculator.SetHorAngle(fajr, isha);
}

int16_t Horarium(int16_t slot)
{
    return calculator.Horarium(slot);
}

int16_t QiblaDir()
{
    return calculator.QiblaDir();
}

int16_t SunElev(int16_t minute)
{
    return calculator.SunElev(minute);
}

int16_t MoonElevation(int16_t minute)
{
    return calculator.MoonElevation(minute);
}

int16_t Hday()
{
    return static_cast<int16_t>(calculator.Hijri().day);
}

int16_t Hmon()
{
    return static_cast<int16_t>(calculator.Hijri().month);
}

int16_t Hyear()
{
    using Limits = std::numeric_limits<int16_t>;
    const std::int32_t year = calculator.Hijri().year;
    return static_cast<int16_t>(std::clamp<std::int32_t>(year, Limits::min(), Limits::max()));
}

} // extern "C"

#pragma GCC visibility pop
