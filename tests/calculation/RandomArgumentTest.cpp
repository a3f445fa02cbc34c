// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/CalculationModule.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace {

using Short = std::int16_t;

// Any 16 bits; now and then a number at or near a border where something changes.
class RandomShorts final
{
public:
    Short operator()()
    {
        const auto bits = static_cast<std::uint32_t>(m_generator());
        if (bits % 4 != 0) {
            return static_cast<Short>(bits >> 16);
        }
        constexpr std::array<Short, 24> kBorders{0,    1,     -1,    12,   13,    31,    32,    1439,
                                                 1440, 1441,  -1440, 4500, -4500, 6656,  9000,  -9000,
                                                 9001, -9001, 18000, -83,  -84,   -3000, 32767, -32768};
        return kBorders[(bits >> 16) % kBorders.size()];
    }

private:
    std::mt19937 m_generator{16};
};

// A year of our time half the time, when every rule of the slots is at work.
Short RandomYear(RandomShorts& random)
{
    const Short year = random();
    return year % 2 == 0 ? year : static_cast<Short>(1900 + (year & 0xff));
}

std::string Text(const std::array<Short, 8>& arguments)
{
    std::ostringstream text;
    for (const Short argument : arguments) {
        text << argument << ' ';
    }
    return text.str();
}

bool IsWithin(Short value, int least, int most)
{
    return value >= least && value <= most;
}

TEST(RandomArguments, anySixteenBits_everyAnswerInItsRange)
{
    const CalculationModule module;
    RandomShorts random;
    // Each round is nineteen calls or more.
    constexpr int kRounds = 500000;
    for (int round = 0; round < kRounds; ++round) {
        const std::array<Short, 8> arguments{random(), random(),           random(), random(),
                                             random(), RandomYear(random), random(), random()};
        const auto& [latitude, longitude, offset, day, month, year, fajr, isha] = arguments;
        module.SetHorParams(latitude, longitude, offset, day, month, year);
        module.SetHorTemkin(random(), random(), 0, 0, 0, random(), 0, 0, random(), random());
        module.SetHorAngle(fajr, random(), random(), isha);
        for (Short slot = 1; slot <= 10; ++slot) {
            const bool isUnused = slot == 3 || slot == 4 || slot == 8;
            const Short minute = module.Horarium(slot);
            ASSERT_TRUE(isUnused ? minute == -1 : IsWithin(minute, 1, 1439))
                << slot << ": " << Text(arguments);
        }
        module.Horarium(random());
        ASSERT_TRUE(IsWithin(module.QiblaDir(), 0, 3599)) << Text(arguments);
        ASSERT_TRUE(IsWithin(module.SunElev(random()), -900, 900)) << Text(arguments);
        ASSERT_TRUE(IsWithin(module.MoonElevation(random()), -900, 900)) << Text(arguments);
        ASSERT_TRUE(IsWithin(module.Hday(), 1, 30)) << Text(arguments);
        ASSERT_TRUE(IsWithin(module.Hmon(), 1, 12)) << Text(arguments);
        module.Hyear();
    }
}

} // namespace
