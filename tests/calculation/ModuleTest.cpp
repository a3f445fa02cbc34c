// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/CalculationModule.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> allocations{0};

} // namespace

// The module, loaded into this program, allocates with these if it does at all.
void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

namespace {

TEST(Module, beforeAnySetter_answersForTheNullPointAtTheStartOf2000)
{
    const CalculationModule fresh;
    const CalculationModule set;
    set.SetHorParams(0, 0, 0, 1, 1, 2000);
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        EXPECT_EQ(fresh.Horarium(slot), set.Horarium(slot)) << slot;
    }
    EXPECT_EQ(fresh.Horarium(5), 723);
    EXPECT_EQ(fresh.QiblaDir(), set.QiblaDir());
    EXPECT_EQ(fresh.SunElev(720), set.SunElev(720));
    EXPECT_EQ(fresh.MoonElevation(720), set.MoonElevation(720));
}

TEST(Module, hijriDate_isZeroUntilADateIsSet)
{
    const CalculationModule module;
    module.SetHorAngle(-1800, 500, 500, -1700);
    EXPECT_EQ(module.Hday(), 0);
    EXPECT_EQ(module.Hmon(), 0);
    EXPECT_EQ(module.Hyear(), 0);
    module.SetHorParams(0, 0, 0, 1, 1, 2000);
    EXPECT_EQ(module.Hday(), 24);
    EXPECT_EQ(module.Hmon(), 9);
    EXPECT_EQ(module.Hyear(), 1420);
}

TEST(Module, aRoundOfTheScheduler_answersForThatPlaceAndDate)
{
    const CalculationModule module;
    module.SetHorParams(2142, 3982, 180, 21, 11, 2026);
    module.SetHorTemkin(0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    module.SetHorAngle(-1800, 500, 500, -1700);
    EXPECT_EQ(module.Horarium(3), -1);
    EXPECT_EQ(module.Horarium(4), -1);
    EXPECT_EQ(module.Horarium(8), -1);
    EXPECT_NEAR(module.SunElev(module.Horarium(1)), -180, 2);
    EXPECT_NEAR(module.SunElev(module.Horarium(2)), -8, 2);
    EXPECT_NEAR(module.SunElev(module.Horarium(9)), -8, 2);
    EXPECT_NEAR(module.SunElev(module.Horarium(10)), -170, 2);
    EXPECT_EQ(module.Hmon(), 6);
    EXPECT_EQ(module.Hyear(), 1448);
}

TEST(Module, largestLongitude_fits)
{
    const CalculationModule module;
    module.SetHorParams(0, 18000, 720, 21, 3, 2026);
    EXPECT_NEAR(module.Horarium(5), 727, 1);
    module.SetHorParams(0, -18000, -720, 21, 3, 2026);
    EXPECT_NEAR(module.Horarium(5), 727, 1);
}

TEST(Module, tenMargins_eachReachesItsSlot)
{
    const CalculationModule module;
    module.SetHorParams(2142, 3982, 180, 21, 11, 2026);
    std::int16_t before[11] = {};
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        before[slot] = module.Horarium(slot);
    }
    module.SetHorTemkin(1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
    for (const std::int16_t slot : {std::int16_t{1}, std::int16_t{2}, std::int16_t{5}, std::int16_t{6},
                                    std::int16_t{7}, std::int16_t{9}, std::int16_t{10}}) {
        EXPECT_EQ(module.Horarium(slot), before[slot] + slot) << slot;
    }
}

TEST(Module, theMiddleAngles_changeNothing)
{
    const CalculationModule module;
    module.SetHorAngle(-1500, 500, 500, -1500);
    std::int16_t before[11] = {};
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        before[slot] = module.Horarium(slot);
    }
    module.SetHorAngle(-1500, -32768, 32767, -1500);
    for (std::int16_t slot = 1; slot <= 10; ++slot) {
        EXPECT_EQ(module.Horarium(slot), before[slot]) << slot;
    }
}

// The Hijri date is left out: ICU's calendar allocates.
TEST(Module, slotsQiblaAndElevations_allocateNothing)
{
    const CalculationModule module;
    // What a library that allocates would call.
    auto* const allocate = reinterpret_cast<void* (*)(std::size_t)>(::dlsym(RTLD_DEFAULT, "_Znwm"));
    ASSERT_NE(allocate, nullptr);
    const long uncounted = allocations;
    ::operator delete(allocate(1));
    ASSERT_EQ(allocations, uncounted + 1);
    const long before = allocations;
    std::int32_t sum = 0;
    for (std::int16_t day = 1; day <= 31; ++day) {
        module.SetHorParams(6965, 1896, 60, day, 3, 2026);
        module.SetHorTemkin(0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
        module.SetHorAngle(-1800, 500, 500, -1700);
        for (std::int16_t slot = 1; slot <= 10; ++slot) {
            sum += module.Horarium(slot);
        }
        sum += module.QiblaDir() + module.SunElev(day) + module.MoonElevation(day);
    }
    EXPECT_EQ(allocations, before);
    EXPECT_NE(sum, 0);
}

TEST(Module, hijriYearBeyond16Bits_staysWithin)
{
    const CalculationModule module;
    module.SetHorParams(0, 0, 0, 31, 12, 32767);
    EXPECT_EQ(module.Hyear(), 32767);
    EXPECT_GE(module.Hmon(), 1);
    EXPECT_LE(module.Hmon(), 12);
    module.SetHorParams(0, 0, 0, 1, 1, -32768);
    EXPECT_EQ(module.Hyear(), -32768);
}

} // namespace
