// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CalculationLibrary.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>

namespace {

using Short = std::int16_t;

// The slots that hold an event.
constexpr std::array<Short, 7> kSlots{1, 2, 5, 6, 7, 9, 10};

// The module that the program loads, each time from a copy of its file, so that its state is the initial one.
class Module : public testing::Test
{
protected:
    Module()
    {
        QFile::copy(QStringLiteral(DUSKBEACON_MODULE), m_folder.filePath(kName));
        QFile::copy(QStringLiteral(DUSKBEACON_MODULE), m_otherFolder.filePath(kName));
    }
    static std::array<Short, 11> AllSlots(CalculationLibrary& library)
    {
        std::array<Short, 11> slots_{};
        for (Short slot = 1; slot <= 10; ++slot) {
            slots_.at(static_cast<std::size_t>(slot)) = library.Horarium(slot);
        }
        return slots_;
    }

private:
    static inline const QString kName = QStringLiteral("DuskBeacon.DBN");
    QTemporaryDir m_folder;
    QTemporaryDir m_otherFolder;

protected:
    CalculationLibrary module{m_folder.path()};
    CalculationLibrary other{m_otherFolder.path()};
};

TEST_F(Module, beforeAnySetter_isAtZeroDegreesAtTheStartOf2000)
{
    other.SetHorParams(0, 0, 0, 1, 1, 2000);
    other.SetHorTemkin({});
    other.SetHorAngle(-1800, 500, 500, -1700);
    EXPECT_EQ(AllSlots(module), AllSlots(other));
    EXPECT_EQ(module.QiblaDir(), other.QiblaDir());
    EXPECT_EQ(module.SunElev(720), other.SunElev(720));
    EXPECT_EQ(module.MoonElevation(720), other.MoonElevation(720));
    // The sun's transit of that day.
    EXPECT_EQ(module.Horarium(5), 723);
}

TEST_F(Module, hijriDate_isZeroUntilADateIsSet)
{
    module.SetHorAngle(-1800, 500, 500, -1700);
    EXPECT_EQ(module.Hday(), 0);
    EXPECT_EQ(module.Hmon(), 0);
    EXPECT_EQ(module.Hyear(), 0);
    module.SetHorParams(0, 0, 0, 1, 1, 2000);
    EXPECT_EQ(module.Hday(), 24);
    EXPECT_EQ(module.Hmon(), 9);
    EXPECT_EQ(module.Hyear(), 1420);
}

TEST_F(Module, roundOfTheScheduler_isForItsPlaceAndDate)
{
    module.SetHorParams(2142, 3982, 180, 21, 11, 2026);
    module.SetHorTemkin({});
    module.SetHorAngle(-1800, 500, 500, -1700);
    EXPECT_NEAR(module.SunElev(module.Horarium(1)), -180, 2);
    EXPECT_NEAR(module.SunElev(module.Horarium(2)), -8, 2);
    EXPECT_NEAR(module.SunElev(module.Horarium(9)), -8, 2);
    EXPECT_NEAR(module.SunElev(module.Horarium(10)), -170, 2);
    EXPECT_EQ(module.Hmon(), 6);
    EXPECT_EQ(module.Hyear(), 1448);
}

TEST_F(Module, largestLongitude_fits)
{
    module.SetHorParams(0, 18000, 720, 21, 3, 2026);
    EXPECT_NEAR(module.Horarium(5), 727, 1);
    module.SetHorParams(0, -18000, -720, 21, 3, 2026);
    EXPECT_NEAR(module.Horarium(5), 727, 1);
}

TEST_F(Module, tenMargins_eachReachesItsSlot)
{
    module.SetHorParams(2142, 3982, 180, 21, 11, 2026);
    const auto before = AllSlots(module);
    module.SetHorTemkin({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    for (const Short slot : kSlots) {
        EXPECT_EQ(module.Horarium(slot), before.at(static_cast<std::size_t>(slot)) + slot) << slot;
    }
}

TEST_F(Module, theMiddleAngles_changeNothing)
{
    module.SetHorAngle(-1500, 500, 500, -1500);
    const auto before = AllSlots(module);
    module.SetHorAngle(-1500, -32768, 32767, -1500);
    EXPECT_EQ(AllSlots(module), before);
}

TEST_F(Module, hijriYearBeyond16Bits_staysWithin)
{
    module.SetHorParams(0, 0, 0, 31, 12, 32767);
    EXPECT_EQ(module.Hyear(), 32767);
    module.SetHorParams(0, 0, 0, 1, 1, -32768);
    EXPECT_EQ(module.Hyear(), -32768);
}

// A random 16-bit number, sometimes at or near a limit.
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
    // Half of the years are 1900 to 2155, in which every rule of the slots is used.
    Short Year()
    {
        const Short year = (*this)();
        return year % 2 == 0 ? year : static_cast<Short>(1900 + (year & 0xff));
    }

private:
    std::mt19937 m_generator{16};
};

bool IsWithin(Short value, int least, int most)
{
    return value >= least && value <= most;
}

TEST_F(Module, anyArguments_everyResultInItsRange)
{
    RandomShorts random;
    // Each round is nineteen calls or more.
    constexpr int kRounds = 500000;
    for (int round = 0; round < kRounds; ++round) {
        const std::array<Short, 8> arguments{random(), random(),      random(), random(),
                                             random(), random.Year(), random(), random()};
        const auto& [latitude, longitude, offset, day, month, year, fajr, isha] = arguments;
        module.SetHorParams(latitude, longitude, offset, day, month, year);
        module.SetHorTemkin({random(), random(), 0, 0, 0, random(), 0, 0, random(), random()});
        module.SetHorAngle(fajr, random(), random(), isha);
        bool isEachWithin = module.Horarium(3) == -1 && module.Horarium(4) == -1 && module.Horarium(8) == -1;
        for (const Short slot : kSlots) {
            isEachWithin = isEachWithin && IsWithin(module.Horarium(slot), 1, 1439);
        }
        static_cast<void>(module.Horarium(random()));
        isEachWithin = isEachWithin && IsWithin(module.QiblaDir(), 0, 3599) &&
                       IsWithin(module.SunElev(random()), -900, 900) &&
                       IsWithin(module.MoonElevation(random()), -900, 900) &&
                       IsWithin(module.Hday(), 1, 30) && IsWithin(module.Hmon(), 1, 12);
        static_cast<void>(module.Hyear());
        ASSERT_TRUE(isEachWithin) << testing::PrintToString(arguments);
    }
}

} // namespace
