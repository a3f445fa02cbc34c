// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Days.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <sstream>

// Every place on a grid of 5 degrees and every day of four years. The optimised build tests all of them;
// other builds test every n-th day and the day after it, see CMakeLists.txt.
namespace {

using calculation::Event;
using calculation::Place;
using Day = std::array<Short, kEvents.size()>;

constexpr Short kFirstYear = 2024;
constexpr int kDays = 4 * 365 + 1;
constexpr int kStride = DUSKBEACON_SWEEP_STRIDE;

struct Angles
{
    const char* name;
    Short fajr;
    Short isha;
};

std::string Text(const Place& place, int number, const Day& day)
{
    std::ostringstream text;
    text << "latitude " << place.latitude << " longitude " << place.longitude << " day " << number << ": "
         << testing::PrintToString(day) << '\n';
    return text.str();
}

// Largest change from one day to the next, in minutes, where both days are computed by the same rules. Near
// the polar day or night the sun's path touches the horizon, and sunrise moves by an hour a day and more.
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
    // The offset of the time zone of the place, in whole hours.
    static Short OffsetOf(const Place& place)
    {
        return static_cast<Short>(std::lround(place.longitude / 1500.0) * 60);
    }

    // number: days from 1 January of the first year.
    Day At(const Place& place, int number)
    {
        m_calculator.SetHorParams(place, OffsetOf(place), static_cast<Short>(number + 1), 1, kFirstYear);
        m_calculator.SetHorAngle(GetParam().fajr, GetParam().isha);
        Day day{};
        std::transform(kEvents.begin(), kEvents.end(), day.begin(),
                       [this](const NamedEvent& event) { return m_calculator.Horarium(event.slot); });
        return day;
    }

    bool IsOfLatitude45(const Place& place, int number, const Day& day)
    {
        return std::abs(place.latitude) > 6000 &&
               At({static_cast<Short>(place.latitude < 0 ? -4500 : 4500), place.longitude}, number) == day;
    }

    // The minutes are in order, unless an event of the solar day is on the other side of midnight: then the
    // date shows that of another day, and the events of the solar day must be in order.
    bool IsInOrder(const Place& place, int number, const Day& day)
    {
        if (std::is_sorted(day.begin(), day.end())) {
            return true;
        }
        const auto date = calculation::DaysSince2000(static_cast<Short>(number + 1), 1, kFirstYear);
        auto own = DayOf(place, date - OffsetOf(place) / kMinutesPerDay, GetParam().fajr / 100.0,
                         GetParam().isha / 100.0);
        std::array<double, kEvents.size()> times{};
        std::transform(kEvents.begin(), kEvents.end(), times.begin(),
                       [&](const NamedEvent& event) { return own.OfSolarDay(event.event, 0); });
        ++m_carried;
        const bool isCarried = times.front() < -0.5 || times.back() >= 0.5;
        return isCarried && std::is_sorted(times.begin(), times.end());
    }

    static void ExpectSmallChanges(const Place& place, int number, const Day& day, const Day& next)
    {
        const int limit = LargestChange(std::abs(place.latitude) / 100);
        // If the portion of the angle is half the night, the true event may be minutes from midnight on one
        // day and missing on the next: the sun's path is flat at its lowest point.
        const int fajrLimit = GetParam().fajr <= -3000 ? std::max(limit, 60) : limit;
        const int ishaLimit = GetParam().isha <= -3000 ? std::max(limit, 60) : limit;
        for (std::size_t i = 0; i < day.size(); ++i) {
            const Event event = kEvents[i].event;
            // The short way round the clock.
            const double change = std::abs(std::remainder(next[i] - day[i], kMinutesPerDay));
            ASSERT_LE(change, event == Event::Fajr   ? fajrLimit
                              : event == Event::Isha ? ishaLimit
                                                     : limit)
                << kEvents[i].name << Text(place, number, day) << Text(place, number + 1, next);
        }
    }

    void SweepPlace(const Place& place)
    {
        Day day = At(place, 0);
        bool isOfLatitude45 = IsOfLatitude45(place, 0, day);
        for (int number = 0; number < kDays; number += kStride) {
            const auto [least, most] = std::minmax_element(day.begin(), day.end());
            ASSERT_TRUE(*least >= 1 && *most < 1440) << Text(place, number, day);
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

    calculation::Calculator m_calculator;
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

// One test for each, so that they run in parallel.
INSTANTIATE_TEST_SUITE_P(angles, Sweep,
                         ::testing::Values(Angles{"fifteenFifteen", -1500, -1500},
                                           Angles{"eighteenSeventeen", -1800, -1700},
                                           Angles{"nineteenSeventeen", -1900, -1700},
                                           Angles{"twentyEighteen", -2000, -1800},
                                           Angles{"thirtyThirty", -3000, -3000}),
                         [](const auto& parameter) { return parameter.param.name; });

} // namespace
