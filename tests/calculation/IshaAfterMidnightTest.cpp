// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Days.h"

#include <gtest/gtest.h>

// Places where Isha crosses midnight in early summer and returns in July: 2026 to 2029, angles of the Muslim
// World League, daylight saving on.
namespace {

using calculation::DaysSince2000;
using calculation::Event;
using calculation::Place;

struct City
{
    const char* name;
    Place place; // with the rounding of the program
    Short offset;
    // Dates on which the clock time of Isha lies in the first half minute: as an event of that date, and as
    // one that is taken from a neighbour.
    int eventsInTheFirstHalfMinute;
    int borrowedInTheFirstHalfMinute;
};

constexpr City kCities[]{{"Paris", {4885, 235}, 120, 3, 1},
                         {"Brussels", {5085, 434}, 120, 3, 2},
                         {"Amsterdam", {5237, 488}, 120, 3, 2},
                         {"Moscow", {5575, 3761}, 240, 4, 2}};

// Isha on one date. All times are minutes from the date's 0:00.
struct IshaOfDate
{
    double ofThisEvening = 0.0;
    double ofTheEveningBefore = 0.0;
    double shown = 0.0; // before rounding
    int announced = 0;  // the slot

    // 0 to 2 of the two evenings.
    [[nodiscard]] int CountWithinDate() const
    {
        const auto isWithin = [](double time) { return time >= 0.0 && time < kMinutesPerDay; };
        return isWithin(ofThisEvening) + isWithin(ofTheEveningBefore);
    }
};

// The day is counted from 1 January.
IshaOfDate IshaOn(const City& city, Short year, Short dayOfYear)
{
    auto day = DayOf(city.place, DaysSince2000(dayOfYear, 1, year) - city.offset / kMinutesPerDay);
    return {Minutes(day.OfSolarDay(Event::Isha, 0)), Minutes(day.OfSolarDay(Event::Isha, -1)),
            Minutes(day.WithinDate(Event::Isha)),
            CalculatorOf(city.place, city.offset, dayOfYear, 1, year).Horarium(10)};
}

struct Counts
{
    int eventsInTheFirstHalfMinute = 0;
    int borrowedInTheFirstHalfMinute = 0;
    int datesWithout = 0;
    int datesWithTwo = 0;
    int nightsWithTwoAlerts = 0;
    int nightsWithNoAlert = 0;
};

void CheckDate(const IshaOfDate& isha, std::int32_t date, Short year, Counts& counts)
{
    const int count = isha.CountWithinDate();
    EXPECT_GT(isha.announced, 0);
    if (isha.shown < 0.5) {
        ++(count == 0 ? counts.borrowedInTheFirstHalfMinute : counts.eventsInTheFirstHalfMinute);
        EXPECT_EQ(isha.announced, 1);
    }
    if (count == 0) {
        ++counts.datesWithout;
        EXPECT_GE(date, DaysSince2000(26, 5, year));
        EXPECT_LE(date, DaysSince2000(4, 6, year));
    }
    if (count == 2) {
        ++counts.datesWithTwo;
        EXPECT_GE(date, DaysSince2000(22, 7, year));
        EXPECT_LE(date, DaysSince2000(28, 7, year));
        EXPECT_LT(isha.ofTheEveningBefore, 3.0) << "the Isha that is not announced";
        EXPECT_GE(isha.ofThisEvening, 1437.0);
        EXPECT_EQ(isha.shown, isha.ofThisEvening);
    }
}

// The alerts of two successive dates are a day apart, except in two nights a year.
void CheckNight(const IshaOfDate& isha, const IshaOfDate& next, Counts& counts)
{
    EXPECT_NEAR(next.ofTheEveningBefore, isha.ofThisEvening - kMinutesPerDay, 0.002);
    const double apart = kMinutesPerDay + next.announced - isha.announced;
    if (apart < kMinutesPerDay / 2) {
        ++counts.nightsWithTwoAlerts;
        EXPECT_TRUE(isha.CountWithinDate() == 0 || next.CountWithinDate() == 0);
        EXPECT_EQ(isha.announced, 1439);
        EXPECT_EQ(next.announced, 1);
    } else if (apart > kMinutesPerDay * 3 / 2) {
        ++counts.nightsWithNoAlert;
        EXPECT_EQ(next.CountWithinDate(), 2);
    }
}

TEST(IshaAfterMidnight, fourYearsOfFourCities_eachDateHasOneAlert_twoComeInOneNightAYear)
{
    for (const City& city : kCities) {
        Counts counts;
        for (Short year = 2026; year < 2030; ++year) {
            IshaOfDate isha = IshaOn(city, year, 1);
            for (Short day = 1; day <= 366; ++day) {
                SCOPED_TRACE(testing::Message() << city.name << ' ' << year << ' ' << day);
                CheckDate(isha, DaysSince2000(day, 1, year), year, counts);
                const IshaOfDate next = IshaOn(city, year, static_cast<Short>(day + 1));
                CheckNight(isha, next, counts);
                isha = next;
            }
            SCOPED_TRACE(testing::Message() << city.name << ' ' << year);
            EXPECT_EQ(counts.datesWithout, year - 2025);
            EXPECT_EQ(counts.datesWithTwo, year - 2025);
            EXPECT_EQ(counts.nightsWithTwoAlerts, year - 2025);
            EXPECT_EQ(counts.nightsWithNoAlert, year - 2025);
        }
        EXPECT_EQ(counts.eventsInTheFirstHalfMinute, city.eventsInTheFirstHalfMinute) << city.name;
        EXPECT_EQ(counts.borrowedInTheFirstHalfMinute, city.borrowedInTheFirstHalfMinute) << city.name;
    }
}

} // namespace
