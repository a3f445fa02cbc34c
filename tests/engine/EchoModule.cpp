// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// A module with the exports of the real one that returns its arguments, so that a test sees each one in its
// place. A second build lacks the last export.
#include <array>
#include <cstdint>
#include <numeric>

namespace {

std::array<std::int16_t, 6> params{};
std::int16_t marginSum = 0;
std::array<std::int16_t, 4> angles{};

} // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED void SetHorParams(std::int16_t latitude, std::int16_t longitude, std::int16_t offset,
                           std::int16_t day, std::int16_t month, std::int16_t year)
{
    params = {latitude, longitude, offset, day, month, year};
}

EXPORTED void SetHorTemkin(std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t d, std::int16_t e,
                           std::int16_t f, std::int16_t g, std::int16_t h, std::int16_t i, std::int16_t j)
{
    marginSum = 0;
    std::int16_t weight = 1;
    for (const std::int16_t margin : {a, b, c, d, e, f, g, h, i, j}) {
        marginSum = static_cast<std::int16_t>(marginSum + weight++ * margin);
    }
}

EXPORTED void SetHorAngle(std::int16_t angle1, std::int16_t angle2, std::int16_t angle3, std::int16_t angle4)
{
    angles = {angle1, angle2, angle3, angle4};
}

// Slots 1 to 6 return the six parameters, 7 to 10 the four angles.
EXPORTED std::int16_t Horarium(std::int16_t slot)
{
    const auto index = static_cast<std::size_t>(slot - 1);
    return index < params.size() ? params.at(index) : angles.at(index - params.size());
}

EXPORTED std::int16_t QiblaDir()
{
    return marginSum;
}

EXPORTED std::int16_t SunElev(std::int16_t minute)
{
    return static_cast<std::int16_t>(-minute);
}

EXPORTED std::int16_t MoonElevation(std::int16_t minute)
{
    return static_cast<std::int16_t>(minute + 1);
}

EXPORTED std::int16_t Hday()
{
    return 12;
}

EXPORTED std::int16_t Hmon()
{
    return 7;
}

#ifndef WITHOUT_LAST_EXPORT
EXPORTED std::int16_t Hyear()
{
    return 1429;
}
#endif
