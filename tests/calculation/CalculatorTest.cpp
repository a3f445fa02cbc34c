// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"

#include "calculation/Calendar.h"
#include "calculation/PrayerDay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>

namespace {

using calculation::Calculator;
using calculation::kSlotCount;
using calculation::Place;
using Short = std::int16_t;
using Slots = std::array<Short, kSlotCount>;

constexpr Place kMakkah{2142, 3982};
constexpr Short kLeast = std::numeric_limits<Short>::min();
constexpr Short kMost = std::numeric_limits<Short>::max();

Slots AllSlots(Calculator& calculator)
{
    Slots slots{};
    for (Short slot = 1; slot <= kSlotCount; ++slot) {
        slots[static_cast<std::size_t>(slot - 1)] = calculator.Horarium(slot);
    }
    return slots;
}

Calculator Makkah()
{
    Calculator calculator;
    calculator.SetHorParams(kMakkah, 180, 21, 11, 2026);
    calculator.SetHorTemkin({});
    calculator.SetHorAngle(-1800, -1700);
    return calculator;
}

Slots SlotsAt(const Place& place, Short offset, Short day, Short month, Short year)
{
    Calculator calculator;
    calculator.SetHorParams(place, offset, day, month, year);
    calculator.SetHorAngle(-1800, -1700);
    return AllSlots(calculator);
}

TEST(Calculator, beforeAnySetter_answersForTheNullPointAtTheStartOf2000)
{
    Calculator fresh;
    Calculator set;
    set.SetHorParams({0, 0}, 0, 1, 1, 2000);
    set.SetHorTemkin({});
    set.SetHorAngle(-1800, -1700);
    EXPECT_EQ(AllSlots(fresh), AllSlots(set));
    EXPECT_EQ(fresh.QiblaDir(), set.QiblaDir());
    EXPECT_EQ(fresh.SunElev(720), set.SunElev(720));
    EXPECT_EQ(fresh.MoonElevation(720), set.MoonElevation(720));
    // The sun's transit of that day.
    EXPECT_EQ(fresh.Horarium(5), 723);
}

TEST(Calculator, latitudeAndLongitudeZero_areAPlaceAndNotAMissingValue)
{
    Calculator calculator = Makkah();
    calculator.SetHorParams({0, 0}, 0, 21, 11, 2026);
    EXPECT_EQ(AllSlots(calculator), SlotsAt({0, 0}, 0, 21, 11, 2026));
    EXPECT_NE(AllSlots(calculator), SlotsAt({0, 1000}, 0, 21, 11, 2026));
}

TEST(Calculator, slotsWithoutAnEvent_holdNoMinute)
{
    Calculator calculator = Makkah();
    for (const Short slot : {Short{3}, Short{4}, Short{8}, Short{0}, Short{11}, Short{-1}, kLeast, kMost}) {
        EXPECT_EQ(calculator.Horarium(slot), -1) << slot;
    }
}

TEST(Calculator, slotsInAnyOrderAndAgain_theSame)
{
    Calculator calculator = Makkah();
    const Slots ascending = AllSlots(calculator);
    Calculator other = Makkah();
    for (Short slot = kSlotCount; slot >= 1; --slot) {
        EXPECT_EQ(other.Horarium(slot), ascending[static_cast<std::size_t>(slot - 1)]) << slot;
    }
    EXPECT_EQ(AllSlots(calculator), ascending);
}

TEST(Calculator, settersInAnyOrder_theSame)
{
    Calculator calculator;
    calculator.SetHorAngle(-1500, -1500);
    static_cast<void>(calculator.Horarium(1));
    calculator.SetHorTemkin({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    static_cast<void>(calculator.Horarium(10));
    calculator.SetHorParams(kMakkah, 180, 21, 11, 2026);
    Calculator other;
    other.SetHorParams(kMakkah, 180, 21, 11, 2026);
    other.SetHorTemkin({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    other.SetHorAngle(-1500, -1500);
    EXPECT_EQ(AllSlots(calculator), AllSlots(other));
}

TEST(Calculator, newAngles_moveFajrAndIshaAlone)
{
    Calculator calculator = Makkah();
    const Slots before = AllSlots(calculator);
    calculator.SetHorAngle(-1500, -1200);
    const Slots after = AllSlots(calculator);
    for (std::size_t i = 0; i < after.size(); ++i) {
        const bool isTwilight = i == 0 || i == 9;
        EXPECT_EQ(after[i] != before[i], isTwilight) << i + 1;
    }
    EXPECT_GT(after[0], before[0]);
    EXPECT_LT(after[9], before[9]);
}

TEST(Calculator, margins_addedAndRoundTheClock)
{
    Calculator calculator = Makkah();
    const Slots before = AllSlots(calculator);
    calculator.SetHorTemkin({-2, 1440, 7, 7, -1441, 5, kMost, 7, kLeast, 1439});
    const Slots after = AllSlots(calculator);
    EXPECT_EQ(after[0], before[0] - 2);
    EXPECT_EQ(after[1], before[1]);
    EXPECT_EQ(after[2], -1);
    EXPECT_EQ(after[3], -1);
    EXPECT_EQ(after[4], before[4] - 1);
    EXPECT_EQ(after[5], before[5] + 5);
    EXPECT_EQ(after[6], (before[6] + kMost) % 1440);
    EXPECT_EQ(after[7], -1);
    EXPECT_EQ(after[8], (before[8] + kLeast + 23 * 1440) % 1440);
    EXPECT_EQ(after[9], before[9] - 1);
}

TEST(Calculator, marginThatLeadsToMidnight_minuteOne)
{
    Calculator calculator = Makkah();
    const Slots before = AllSlots(calculator);
    calculator.SetHorTemkin({static_cast<Short>(-before[0]), static_cast<Short>(1 - before[1]), 0, 0,
                             static_cast<Short>(1440 - before[4]), 0, 0, 0, 0,
                             static_cast<Short>(1439 - before[9])});
    EXPECT_EQ(calculator.Horarium(1), 1);
    EXPECT_EQ(calculator.Horarium(2), 1);
    EXPECT_EQ(calculator.Horarium(5), 1);
    EXPECT_EQ(calculator.Horarium(10), 1439);
}

TEST(Calculator, anglesThatAreNotBelowTheHorizon_sunriseAndSunset)
{
    for (const Short angle : {Short{0}, Short{500}, Short{1800}, kMost, Short{-83}}) {
        Calculator calculator = Makkah();
        calculator.SetHorAngle(angle, angle);
        EXPECT_EQ(calculator.Horarium(1), calculator.Horarium(2)) << angle;
        EXPECT_EQ(calculator.Horarium(10), calculator.Horarium(9)) << angle;
    }
}

TEST(Calculator, anglesBelowTheNadir_theMiddleOfTheNight)
{
    Calculator calculator = Makkah();
    calculator.SetHorAngle(kLeast, kLeast);
    const Slots deepest = AllSlots(calculator);
    calculator.SetHorAngle(-9000, -9000);
    EXPECT_EQ(AllSlots(calculator), deepest);
    // Half a day from the noon of 12:06.
    EXPECT_NEAR(deepest[0], 6, 2);
    EXPECT_NEAR(deepest[9], 6, 2);
}

TEST(Calculator, latitudeBeyondThePole_thePole)
{
    EXPECT_EQ(SlotsAt({9001, 0}, 0, 1, 3, 2026), SlotsAt({9000, 0}, 0, 1, 3, 2026));
    EXPECT_EQ(SlotsAt({kMost, 0}, 0, 1, 3, 2026), SlotsAt({9000, 0}, 0, 1, 3, 2026));
    EXPECT_EQ(SlotsAt({kLeast, 0}, 0, 1, 3, 2026), SlotsAt({-9000, 0}, 0, 1, 3, 2026));
}

TEST(Calculator, longitudesAWholeTurnApart_theSame)
{
    EXPECT_EQ(SlotsAt({5000, 18000}, 720, 1, 3, 2026), SlotsAt({5000, -18000}, 720, 1, 3, 2026));
    EXPECT_EQ(SlotsAt({5000, 19000}, 720, 1, 3, 2026), SlotsAt({5000, -17000}, 720, 1, 3, 2026));
}

TEST(Calculator, dateThatIsNone_countsOn)
{
    EXPECT_EQ(SlotsAt(kMakkah, 180, 31, 2, 2026), SlotsAt(kMakkah, 180, 3, 3, 2026));
    EXPECT_EQ(SlotsAt(kMakkah, 180, 15, 14, 2026), SlotsAt(kMakkah, 180, 15, 2, 2027));
}

TEST(Calculator, yearBeyondTheTheories_asInTheNearestCycleWithin)
{
    EXPECT_EQ(SlotsAt(kMakkah, 180, 1, 3, 6026), SlotsAt(kMakkah, 180, 1, 3, 5626));
    EXPECT_EQ(SlotsAt(kMakkah, 180, 1, 3, -2026), SlotsAt(kMakkah, 180, 1, 3, -1626));
}

TEST(Calculator, offsetByAWholeDay_theNeighbouringDate)
{
    EXPECT_EQ(SlotsAt(kMakkah, 180 + 1440, 2, 3, 2026), SlotsAt(kMakkah, 180, 1, 3, 2026));
}

TEST(Calculator, minutesOutsideTheDate_thoseOfTheDatesAround)
{
    Calculator calculator = Makkah();
    for (int days = -22; days <= 22; ++days) {
        Calculator there;
        there.SetHorParams(kMakkah, 180, static_cast<Short>(21 + days), 11, 2026);
        const auto minute = static_cast<Short>(days * 1440 + 500);
        EXPECT_EQ(calculator.SunElev(minute), there.SunElev(500)) << days;
        EXPECT_EQ(calculator.MoonElevation(minute), there.MoonElevation(500)) << days;
    }
}

TEST(Calculator, elevationOfTheSunAtSunriseAndNoon_asTheSlotsSay)
{
    Calculator calculator = Makkah();
    EXPECT_NEAR(calculator.SunElev(calculator.Horarium(2)), -8, 2);
    EXPECT_NEAR(calculator.SunElev(calculator.Horarium(9)), -8, 2);
    EXPECT_NEAR(calculator.SunElev(calculator.Horarium(1)), -180, 2);
    EXPECT_GE(calculator.SunElev(calculator.Horarium(5)), calculator.SunElev(600));
}

// An event in the last half minute before midnight would round to a minute of the next date, and at minute 0
// the scheduler computes the new day and raises no alert.
TEST(Calculator, eventWithinHalfAMinuteOfMidnight_firstOrLastMinuteThatIsAnnounced)
{
    // A clock six hours ahead of the sun's puts the sunset of the equinox at midnight.
    constexpr Short kOffset = 360;
    int last = 0;
    int first = 0;
    for (Short longitude = -300; longitude < 300; ++longitude) {
        calculation::PrayerDay day;
        day.SetPlaceAndDate({0, longitude}, calculation::DaysSince2000(21, 3, 2026) - kOffset / 1440.0);
        const double minutes = (day.WithinDate(calculation::Event::Sunset) + 0.5) * 1440.0;
        last += minutes >= 1439.5 ? 1 : 0;
        first += minutes < 0.5 ? 1 : 0;
        Calculator calculator;
        calculator.SetHorParams({0, longitude}, kOffset, 21, 3, 2026);
        EXPECT_EQ(calculator.Horarium(9), std::clamp(std::floor(minutes + 0.5), 1.0, 1439.0)) << longitude;
    }
    EXPECT_GE(last, 10);
    EXPECT_GE(first, 5);
}

struct Answers
{
    Slots slots{};
    Short qibla = 0;
    Short sun = 0;
    Short moon = 0;
    Short hijriDay = 0;
    Short hijriMonth = 0;
    Short hijriYear = 0;

    bool operator==(const Answers&) const = default;
};

Answers AllAnswers(Calculator& calculator)
{
    constexpr Short kMinute = 600;
    const calculation::HijriDate hijri = calculator.Hijri();
    return {AllSlots(calculator),          calculator.QiblaDir(),
            calculator.SunElev(kMinute),   calculator.MoonElevation(kMinute),
            static_cast<Short>(hijri.day), static_cast<Short>(hijri.month),
            static_cast<Short>(hijri.year)};
}

TEST(Calculator, newPlaceAndDate_everyAnswerAsOfAFreshOne)
{
    Calculator calculator = Makkah();
    const Answers first = AllAnswers(calculator);
    const auto setToronto = [](Calculator& other) { other.SetHorParams({4370, -7942}, -240, 4, 7, 2027); };
    setToronto(calculator);
    Calculator fresh;
    setToronto(fresh);
    fresh.SetHorAngle(-1800, -1700);
    const Answers second = AllAnswers(calculator);
    EXPECT_TRUE(second == AllAnswers(fresh));
    // No answer is the same by chance, so that each of them was worked out anew.
    EXPECT_NE(second.slots, first.slots);
    EXPECT_NE(second.qibla, first.qibla);
    EXPECT_NE(second.sun, first.sun);
    EXPECT_NE(second.moon, first.moon);
    EXPECT_NE(second.hijriDay, first.hijriDay);
    EXPECT_NE(second.hijriMonth, first.hijriMonth);
    EXPECT_NE(second.hijriYear, first.hijriYear);
    calculator = Makkah();
    EXPECT_TRUE(AllAnswers(calculator) == first);
}

} // namespace
