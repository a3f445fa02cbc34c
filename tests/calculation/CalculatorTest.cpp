// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"

#include "calculation/Days.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

using calculation::Calculator;
using calculation::kSlotCount;
using calculation::Place;
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

// The ten slots, the Qibla, and both elevations at 10:00.
std::array<Short, kSlotCount + 3> AllAnswers(Calculator& calculator)
{
    std::array<Short, kSlotCount + 3> answers{};
    const Slots slots = AllSlots(calculator);
    std::copy(slots.begin(), slots.end(), answers.begin());
    answers[kSlotCount] = calculator.QiblaDir();
    answers[kSlotCount + 1] = calculator.SunElev(600);
    answers[kSlotCount + 2] = calculator.MoonElevation(600);
    return answers;
}

Calculator Makkah()
{
    return CalculatorOf(kMakkah, 180, 21, 11, 2026);
}

TEST(Calculator, slotsWithoutAnEvent_holdNoMinute)
{
    Calculator calculator = Makkah();
    for (const Short slot : {Short{3}, Short{4}, Short{8}, Short{0}, Short{11}, Short{-1}, kLeast, kMost}) {
        EXPECT_EQ(calculator.Horarium(slot), -1) << slot;
    }
}

TEST(Calculator, settersAndSlotsInAnyOrderAndAgain_theSame)
{
    Calculator calculator;
    calculator.SetHorAngle(-1500, -1500);
    static_cast<void>(calculator.Horarium(1));
    calculator.SetHorTemkin({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    static_cast<void>(calculator.Horarium(10));
    calculator.SetHorParams(kMakkah, 180, 21, 11, 2026);
    const Slots ascending = AllSlots(calculator);
    EXPECT_EQ(AllSlots(calculator), ascending);
    Calculator other = Makkah();
    other.SetHorTemkin({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    other.SetHorAngle(-1500, -1500);
    for (Short slot = kSlotCount; slot >= 1; --slot) {
        EXPECT_EQ(other.Horarium(slot), ascending[static_cast<std::size_t>(slot - 1)]) << slot;
    }
}

TEST(Calculator, newAngles_moveFajrAndIshaAlone)
{
    Calculator calculator = Makkah();
    const Slots before = AllSlots(calculator);
    calculator.SetHorAngle(-1500, -1200);
    const Slots after = AllSlots(calculator);
    EXPECT_TRUE(std::equal(after.begin() + 1, after.end() - 1, before.begin() + 1));
    EXPECT_GT(after[0], before[0]);
    EXPECT_LT(after[9], before[9]);
}

TEST(Calculator, margins_areAddedAndWrapAroundTheClock)
{
    Calculator calculator = Makkah();
    const Slots before = AllSlots(calculator);
    calculator.SetHorTemkin({-2, 1440, 7, 7, -1441, 5, kMost, 7, kLeast, 1439});
    const auto sum = [&before](std::size_t slot, int margin) {
        return static_cast<Short>((before[slot - 1] + margin + 23 * 1440) % 1440);
    };
    EXPECT_EQ(AllSlots(calculator), (Slots{sum(1, -2), before[1], -1, -1, sum(5, -1), sum(6, 5),
                                           sum(7, kMost), -1, sum(9, kLeast), sum(10, -1)}));
}

TEST(Calculator, marginThatLeadsToMidnight_minuteOne)
{
    Calculator calculator = Makkah();
    const Slots before = AllSlots(calculator);
    calculator.SetHorTemkin({static_cast<Short>(-before[0]), static_cast<Short>(1 - before[1]), 0, 0,
                             static_cast<Short>(1440 - before[4]), static_cast<Short>(-1 - before[5]), 0, 0,
                             0, static_cast<Short>(1439 - before[9])});
    EXPECT_EQ(calculator.Horarium(1), 1);
    EXPECT_EQ(calculator.Horarium(2), 1);
    EXPECT_EQ(calculator.Horarium(5), 1);
    EXPECT_EQ(calculator.Horarium(6), 1439);
    EXPECT_EQ(calculator.Horarium(10), 1439);
}

TEST(Calculator, anglesThatAreNotBelowTheHorizon_sunriseAndSunset)
{
    Calculator calculator = Makkah();
    for (const Short angle : {Short{0}, Short{500}, Short{1800}, kMost, Short{-83}}) {
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

struct Arguments
{
    Place place;
    Short offset;
    Short day;
    Short month;
    Short year;
};

TEST(Calculator, argumentsOutOfRange_areWrappedOrLimited)
{
    struct Row
    {
        const char* name;
        Arguments given;
        Arguments meant;
    };
    constexpr Row kRows[]{
        {"beyond the north pole", {{9001, 0}, 0, 1, 3, 2026}, {{9000, 0}, 0, 1, 3, 2026}},
        {"far beyond the north pole", {{kMost, 0}, 0, 1, 3, 2026}, {{9000, 0}, 0, 1, 3, 2026}},
        {"far beyond the south pole", {{kLeast, 0}, 0, 1, 3, 2026}, {{-9000, 0}, 0, 1, 3, 2026}},
        {"half a turn", {{5000, 18000}, 720, 1, 3, 2026}, {{5000, -18000}, 720, 1, 3, 2026}},
        {"beyond half a turn", {{5000, 19000}, 720, 1, 3, 2026}, {{5000, -17000}, 720, 1, 3, 2026}},
        {"no such day", {kMakkah, 180, 31, 2, 2026}, {kMakkah, 180, 3, 3, 2026}},
        {"no such month", {kMakkah, 180, 15, 14, 2026}, {kMakkah, 180, 15, 2, 2027}},
        {"after the theories' years", {kMakkah, 180, 1, 3, 6026}, {kMakkah, 180, 1, 3, 5626}},
        {"before the theories' years", {kMakkah, 180, 1, 3, -2026}, {kMakkah, 180, 1, 3, -1626}},
        {"offset of a day more", {kMakkah, 180 + 1440, 2, 3, 2026}, {kMakkah, 180, 1, 3, 2026}},
    };
    const auto answersOf = [](const Arguments& arguments) {
        const auto& [place, offset, day, month, year] = arguments;
        Calculator calculator = CalculatorOf(place, offset, day, month, year);
        return AllAnswers(calculator);
    };
    for (const Row& row : kRows) {
        EXPECT_EQ(answersOf(row.given), answersOf(row.meant)) << row.name;
    }
}

TEST(Calculator, minutesOutsideTheDate_areOnTheNeighbouringDates)
{
    const Calculator calculator = Makkah();
    for (int days = -22; days <= 22; ++days) {
        const Calculator there = CalculatorOf(kMakkah, 180, static_cast<Short>(21 + days), 11, 2026);
        const auto minute = static_cast<Short>(days * 1440 + 500);
        EXPECT_EQ(calculator.SunElev(minute), there.SunElev(500)) << days;
        EXPECT_EQ(calculator.MoonElevation(minute), there.MoonElevation(500)) << days;
    }
}

// An event in the last half minute before midnight would round to a minute of the next date, and at minute 0
// the scheduler computes the new day and raises no alert.
TEST(Calculator, eventWithinHalfAMinuteOfMidnight_firstOrLastMinuteThatIsAnnounced)
{
    // With a clock six hours ahead of the sun the sunset at the equinox is at midnight.
    constexpr Short kOffset = 360;
    int last = 0;
    int first = 0;
    for (Short longitude = -300; longitude < 300; ++longitude) {
        const Place place{0, longitude};
        auto day = DayOf(place, calculation::DaysSince2000(21, 3, 2026) - kOffset / kMinutesPerDay);
        const double minutes = Minutes(day.WithinDate(calculation::Event::Sunset));
        last += minutes >= 1439.5 ? 1 : 0;
        first += minutes < 0.5 ? 1 : 0;
        EXPECT_EQ(CalculatorOf(place, kOffset, 21, 3, 2026).Horarium(9),
                  std::clamp(std::floor(minutes + 0.5), 1.0, 1439.0))
            << longitude;
    }
    EXPECT_GE(last, 10);
    EXPECT_GE(first, 5);
}

TEST(Calculator, newPlaceAndDate_everyResultAsOfANewCalculator)
{
    Calculator calculator = Makkah();
    const auto before = AllAnswers(calculator);
    const calculation::HijriDate hijriBefore = calculator.Hijri();
    // 0 N 0 E is a place, not a missing value.
    for (const Place& place : {Place{4370, -7942}, Place{0, 0}}) {
        calculator.SetHorParams(place, -240, 4, 7, 2027);
        Calculator fresh = CalculatorOf(place, -240, 4, 7, 2027);
        const auto after = AllAnswers(calculator);
        EXPECT_EQ(after, AllAnswers(fresh));
        // All values differ, so that each of them was computed again.
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_TRUE(after[i] != before[i] || after[i] == -1) << i;
        }
        EXPECT_NE(calculator.Hijri().day, hijriBefore.day);
        EXPECT_NE(calculator.Hijri().month, hijriBefore.month);
        EXPECT_NE(calculator.Hijri().year, hijriBefore.year);
    }
    calculator.SetHorParams(kMakkah, 180, 21, 11, 2026);
    EXPECT_EQ(AllAnswers(calculator), before);
    EXPECT_EQ(calculator.Hijri().day, hijriBefore.day);
}

} // namespace
