// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/PrayerDay.h"

#include "calculation/Calendar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>

namespace {

using calculation::DaysSince2000;
using calculation::Event;
using calculation::Place;
using calculation::PrayerDay;

struct Candidates
{
    double own;
    double before;
    double after;

    [[nodiscard]] static bool IsWithin(double time) { return time >= -0.5 && time < 0.5; }
    [[nodiscard]] int CountWithin() const { return IsWithin(own) + IsWithin(before) + IsWithin(after); }
    // Of all three the one that has the least way to the date.
    [[nodiscard]] double Nearest() const
    {
        return std::min({own, before, after}, [](double one, double other) { return Way(one) < Way(other); });
    }

private:
    [[nodiscard]] static double Way(double time) { return std::max({0.0, -0.5 - time, time - 0.5}); }
};

// Modulo a day, to a microsecond.
bool IsSameClockTime(double one, double other)
{
    return std::abs(std::remainder(one - other, 1.0)) < 1e-11;
}

// Moves the clock of a place through a whole day, minute by minute, so that each event meets midnight, and
// counts how many events a date was found to have.
std::map<int, int> CheckEveryOffset(Event event, const Place& place, std::int32_t firstDay, int days)
{
    std::map<int, int> cases;
    for (std::int32_t date = firstDay; date < firstDay + days; ++date) {
        for (int offset = -720; offset < 720; ++offset) {
            PrayerDay day;
            day.SetPlaceAndDate(place, date - offset / 1440.0);
            day.SetTwilightAngles(-15.0, -15.0);
            const Candidates candidates{day.OfSolarDay(event, 0), day.OfSolarDay(event, -1),
                                        day.OfSolarDay(event, 1)};
            const double time = day.WithinDate(event);
            const int count = candidates.CountWithin();
            ++cases[count];
            EXPECT_TRUE(Candidates::IsWithin(time));
            if (Candidates::IsWithin(candidates.own)) {
                EXPECT_EQ(time, candidates.own);
            } else if (count > 0) {
                EXPECT_EQ(time,
                          Candidates::IsWithin(candidates.before) ? candidates.before : candidates.after);
            } else {
                EXPECT_TRUE(IsSameClockTime(time, candidates.Nearest())) << offset;
            }
        }
    }
    return cases;
}

struct NamedEvent
{
    std::string name;
    Event event;
};

class EventOfDate : public ::testing::TestWithParam<NamedEvent>
{
};

INSTANTIATE_TEST_SUITE_P(
    events, EventOfDate,
    ::testing::Values(NamedEvent{"Fajr", Event::Fajr}, NamedEvent{"Sunrise", Event::Sunrise},
                      NamedEvent{"Transit", Event::Transit}, NamedEvent{"AsrOneLength", Event::AsrOneLength},
                      NamedEvent{"AsrTwoLengths", Event::AsrTwoLengths}, NamedEvent{"Sunset", Event::Sunset},
                      NamedEvent{"Isha", Event::Isha}),
    [](const auto& parameter) { return parameter.param.name; });

// At 60 N the events move by minutes from day to day, earlier in one season and later in the other, so that
// both a date with two and a date with none come up.
TEST_P(EventOfDate, everyOffset_theOneOfTheDate)
{
    constexpr Place kPlace{6000, 1000};
    std::map<int, int> cases = CheckEveryOffset(GetParam().event, kPlace, DaysSince2000(1, 3, 2026), 3);
    for (const auto& [count, times] :
         CheckEveryOffset(GetParam().event, kPlace, DaysSince2000(25, 10, 2026), 3)) {
        cases[count] += times;
    }
    EXPECT_GT(cases[1], 1000);
    if (GetParam().event != Event::Transit) {
        EXPECT_GT(cases[0], 0);
        EXPECT_GT(cases[2], 0);
    }
}

// The solar noon moves by seconds a day, so that it takes longitudes 2.4 seconds apart to meet its midnight.
// In December solar days are longer than 24 hours and a date may have no noon, in September they are shorter
// and it may have two.
TEST(PrayerDay, transitNearMidnight_theOneNearestToTheDatesNoon)
{
    std::map<int, int> cases;
    for (std::int16_t longitude = 17000; longitude < 19000; ++longitude) {
        for (const std::int32_t date : {DaysSince2000(22, 12, 2026), DaysSince2000(16, 9, 2026)}) {
            PrayerDay day;
            day.SetPlaceAndDate({0, longitude}, date);
            const Candidates candidates{day.OfSolarDay(Event::Transit, 0), day.OfSolarDay(Event::Transit, -1),
                                        day.OfSolarDay(Event::Transit, 1)};
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

TEST(PrayerDay, ishaAfterMidnight_minuteOfTheDateInWhichItLies)
{
    // Helsinki in May: the evening's Isha at 12 degrees is half past midnight.
    constexpr Place kHelsinki{6017, 2494};
    constexpr double kOffset = 180.0 / 1440.0;
    const std::int32_t date = DaysSince2000(14, 5, 2026);
    PrayerDay eve;
    eve.SetPlaceAndDate(kHelsinki, date - 1 - kOffset);
    eve.SetTwilightAngles(-12.0, -24.0);
    PrayerDay day;
    day.SetPlaceAndDate(kHelsinki, date - kOffset);
    day.SetTwilightAngles(-12.0, -24.0);
    ASSERT_GT(eve.OfSolarDay(Event::Isha, 0), 0.5);
    EXPECT_NEAR(day.WithinDate(Event::Isha), eve.OfSolarDay(Event::Isha, 0) - 1.0, 1e-6);
    EXPECT_LT(day.WithinDate(Event::Isha), -0.5 + 90.0 / 1440.0);
}

} // namespace
