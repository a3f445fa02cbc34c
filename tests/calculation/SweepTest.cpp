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
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

// Every place on a grid of 5 degrees and every day of four years. The optimised build goes through all of
// them; others take every so many days and the day after each, see CMakeLists.txt.
namespace {

using calculation::Calculator;
using calculation::Event;
using calculation::Place;
using Short = std::int16_t;

constexpr std::array<Short, 7> kSlots{1, 2, 5, 6, 7, 9, 10};
constexpr std::array<Event, 7> kEvents{Event::Fajr,         Event::Sunrise,       Event::Transit,
                                       Event::AsrOneLength, Event::AsrTwoLengths, Event::Sunset,
                                       Event::Isha};
constexpr std::size_t kFajr = 0;
constexpr std::size_t kIsha = 6;
using Day = std::array<Short, kSlots.size()>;

constexpr Short kFirstYear = 2024;
constexpr int kDays = 4 * 365 + 1;
constexpr int kStride = DUSKBEACON_SWEEP_STRIDE;

struct Angles
{
    std::string name;
    Short fajr;
    Short isha;
};

std::string Text(const Place& place, int number, const Day& day)
{
    std::ostringstream text;
    text << "latitude " << place.latitude << " longitude " << place.longitude << " day " << number << ':';
    for (const Short minute : day) {
        text << ' ' << minute;
    }
    return text.str();
}

// Largest change from one day to the next, in minutes, where both days are computed by the same rules. As the
// polar day or night draws near, the sun's path comes to touch the horizon and its rising moves by an hour a
// day and more.
int LargestChange(int latitude)
{
    static const std::map<int, int> limits{{20, 2}, {35, 3},  {45, 4},  {55, 6},  {60, 7},
                                           {65, 8}, {70, 43}, {75, 52}, {80, 64}, {85, 90}};
    // At the pole itself every day is one of latitude 45.
    return latitude == 90 ? limits.at(45) : limits.lower_bound(latitude)->second;
}

class Sweep : public ::testing::TestWithParam<Angles>
{
protected:
    // That of the place's time zone, in whole hours.
    static Short OffsetOf(const Place& place)
    {
        return static_cast<Short>(std::lround(place.longitude / 1500.0) * 60);
    }

    static double NoonOf(const Place& place, int number)
    {
        return calculation::DaysSince2000(static_cast<Short>(number + 1), 1, kFirstYear) -
               OffsetOf(place) / 1440.0;
    }

    Day At(const Place& place, int number)
    {
        const Short offset = OffsetOf(place);
        m_calculator.SetHorParams(place, offset, static_cast<Short>(number + 1), 1, kFirstYear);
        m_calculator.SetHorAngle(GetParam().fajr, GetParam().isha);
        Day day{};
        for (std::size_t i = 0; i < kSlots.size(); ++i) {
            day[i] = m_calculator.Horarium(kSlots[i]);
        }
        return day;
    }

    // Whether the day is one of latitude 45, found out by asking for that.
    bool IsOfLatitude45(const Place& place, int number, const Day& day)
    {
        if (std::abs(place.latitude) <= 6000) {
            return false;
        }
        const Day ordinary =
            At({static_cast<Short>(place.latitude < 0 ? -4500 : 4500), place.longitude}, number);
        return ordinary == day;
    }

    static bool IsInRange(const Day& day)
    {
        return std::all_of(day.begin(), day.end(), [](Short minute) { return minute >= 0 && minute < 1440; });
    }

    static bool IsAscending(const Day& day) { return std::is_sorted(day.begin(), day.end()); }

    // In order, or the sun's own day has one of its events on the other side of midnight: then the date shows
    // another day's, and it is the events of the sun's day that have to be in order.
    bool IsInOrder(const Place& place, int number, const Day& day)
    {
        if (IsAscending(day)) {
            return true;
        }
        calculation::PrayerDay own;
        own.SetPlaceAndDate(place, NoonOf(place, number));
        own.SetTwilightAngles(GetParam().fajr / 100.0, GetParam().isha / 100.0);
        std::array<double, kEvents.size()> times{};
        for (std::size_t i = 0; i < kEvents.size(); ++i) {
            times[i] = own.OfSolarDay(kEvents[i], 0);
        }
        ++m_carried;
        const bool isCarried = times.front() < -0.5 || times.back() >= 0.5;
        return isCarried && std::is_sorted(times.begin(), times.end());
    }

    // Minutes, the short way round the clock.
    static int Change(const Day& day, const Day& next, std::size_t slot)
    {
        const int change = std::abs(next[slot] - day[slot]);
        return std::min(change, 1440 - change);
    }

    // Where the angle's portion is half the night, the true event may be minutes from midnight one day and
    // the next not be at all: the sun's lowest point is flat.
    static bool IsFlatMidnight(std::size_t slot)
    {
        return (slot == kFajr && GetParam().fajr <= -3000) || (slot == kIsha && GetParam().isha <= -3000);
    }

    static void ExpectSmallChanges(const Place& place, int number, const Day& day, const Day& next)
    {
        constexpr int kFlatMidnightChange = 60;
        const int limit = LargestChange(std::abs(place.latitude) / 100);
        for (std::size_t i = 0; i < day.size(); ++i) {
            ASSERT_LE(Change(day, next, i), IsFlatMidnight(i) ? std::max(limit, kFlatMidnightChange) : limit)
                << Text(place, number, day) << "\n"
                << Text(place, number + 1, next);
        }
    }

    void SweepPlace(const Place& place)
    {
        Day day = At(place, 0);
        bool isOfLatitude45 = IsOfLatitude45(place, 0, day);
        for (int number = 0; number < kDays; number += kStride) {
            ASSERT_TRUE(IsInRange(day)) << Text(place, number, day);
            ASSERT_TRUE(IsInOrder(place, number, day)) << Text(place, number, day);
            const Day next = At(place, number + 1);
            const bool isNextOfLatitude45 = IsOfLatitude45(place, number + 1, next);
            if (isOfLatitude45 == isNextOfLatitude45) {
                ASSERT_NO_FATAL_FAILURE(ExpectSmallChanges(place, number, day, next));
            } else {
                ++m_seams;
            }
            day = kStride == 1 ? next : At(place, number + kStride);
            isOfLatitude45 = kStride == 1 ? isNextOfLatitude45 : IsOfLatitude45(place, number + kStride, day);
        }
    }

    Calculator m_calculator;
    int m_seams = 0;
    int m_carried = 0;
};

TEST_P(Sweep, everyPlaceAndDay_minutesInOrderWithoutJumps)
{
    for (int latitude = -90; latitude <= 90; latitude += 5) {
        for (int longitude = -180; longitude < 180; longitude += 5) {
            const Place place{static_cast<Short>(latitude * 100), static_cast<Short>(longitude * 100)};
            ASSERT_NO_FATAL_FAILURE(SweepPlace(place));
        }
    }
    EXPECT_GT(m_seams, 0);
    std::printf("%d days with an event carried over midnight, %d seams of latitude 45\n", m_carried, m_seams);
}

INSTANTIATE_TEST_SUITE_P(angles, Sweep,
                         ::testing::Values(Angles{"fifteenFifteen", -1500, -1500},
                                           Angles{"eighteenSeventeen", -1800, -1700},
                                           Angles{"nineteenSeventeen", -1900, -1700},
                                           Angles{"twentyEighteen", -2000, -1800},
                                           Angles{"thirtyThirty", -3000, -3000}),
                         [](const auto& parameter) { return parameter.param.name; });

} // namespace
