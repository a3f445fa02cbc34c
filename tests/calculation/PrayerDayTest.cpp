// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/PrayerDay.h"

#include "calculation/Days.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

using calculation::DaysSince2000;
using calculation::Event;
using calculation::PrayerDay;

// The events of a date and of its neighbours.
struct Candidates
{
    double own;
    double before;
    double after;

    [[nodiscard]] static Candidates Of(PrayerDay& day, Event event)
    {
        return {day.OfSolarDay(event, 0), day.OfSolarDay(event, -1), day.OfSolarDay(event, 1)};
    }
    [[nodiscard]] static bool IsWithin(double time) { return time >= -0.5 && time < 0.5; }
    [[nodiscard]] int CountWithin() const { return IsWithin(own) + IsWithin(before) + IsWithin(after); }
    // The one of the three that is nearest to the date.
    [[nodiscard]] double Nearest() const
    {
        const auto way = [](double time) { return std::max({0.0, -0.5 - time, time - 0.5}); };
        return std::min({own, before, after},
                        [way](double one, double other) { return way(one) < way(other); });
    }
};

// Modulo a day, to a microsecond.
bool IsSameClockTime(double one, double other)
{
    return std::abs(std::remainder(one - other, 1.0)) < 1e-11;
}

// Moves the clock of a place through a whole day, minute by minute, so that each event crosses midnight. At
// 60 N the events move by minutes from day to day, earlier in one season and later in the other, so that some
// dates have two of an event and some have none.
TEST(PrayerDay, everyEventAtEveryOffset_theOneOfTheDate)
{
    for (const NamedEvent& event : kEvents) {
        std::map<int, int> cases; // how many events a date has
        for (const std::int32_t firstDay : {DaysSince2000(1, 3, 2026), DaysSince2000(25, 10, 2026)}) {
            for (int minute = -720; minute < 3 * 1440 - 720; ++minute) {
                PrayerDay day = DayOf({6000, 1000}, firstDay + minute / kMinutesPerDay, -15.0, -15.0);
                const auto candidates = Candidates::Of(day, event.event);
                const double time = day.WithinDate(event.event);
                const int count = candidates.CountWithin();
                ++cases[count];
                ASSERT_TRUE(Candidates::IsWithin(time)) << event.name << ' ' << minute;
                if (Candidates::IsWithin(candidates.own)) {
                    ASSERT_EQ(time, candidates.own) << event.name << ' ' << minute;
                } else if (count > 0) {
                    ASSERT_EQ(time,
                              Candidates::IsWithin(candidates.before) ? candidates.before : candidates.after)
                        << event.name << ' ' << minute;
                } else {
                    ASSERT_TRUE(IsSameClockTime(time, candidates.Nearest())) << event.name << ' ' << minute;
                }
            }
        }
        EXPECT_GT(cases[1], 1000) << event.name;
        if (event.event != Event::Transit) {
            EXPECT_GT(cases[0], 0) << event.name;
            EXPECT_GT(cases[2], 0) << event.name;
        }
    }
}

// The transit moves by seconds a day, so that longitudes 2.4 seconds apart are needed to find it at midnight.
// In December solar days are longer than 24 hours and a date may have no transit; in September they are
// shorter and it may have two.
TEST(PrayerDay, transitNearMidnight_theOneNearestToTheDatesNoon)
{
    std::map<int, int> cases;
    for (Short longitude = 17000; longitude < 19000; ++longitude) {
        for (const std::int32_t date : {DaysSince2000(22, 12, 2026), DaysSince2000(16, 9, 2026)}) {
            PrayerDay day = DayOf({0, longitude}, date);
            const auto candidates = Candidates::Of(day, Event::Transit);
            ++cases[candidates.CountWithin()];
            EXPECT_LE(std::abs(candidates.own), std::abs(candidates.before)) << longitude;
            EXPECT_LE(std::abs(candidates.own), std::abs(candidates.after)) << longitude;
            const double time = day.WithinDate(Event::Transit);
            EXPECT_TRUE(Candidates::IsWithin(time)) << longitude;
            EXPECT_TRUE(IsSameClockTime(time, candidates.own)) << longitude;
        }
    }
    EXPECT_GT(cases[0], 5);
    EXPECT_GT(cases[1], 1000);
    EXPECT_GT(cases[2], 5);
}

} // namespace
