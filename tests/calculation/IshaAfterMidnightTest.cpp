// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"
#include "calculation/Calendar.h"
#include "calculation/PrayerDay.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

// Places where Isha crosses midnight in early summer and comes back in July: 2026 to 2029, the angles of the
// Muslim World League, the clock an hour ahead of standard time.
namespace {

using calculation::Calculator;
using calculation::DaysSince2000;
using calculation::Event;
using calculation::Place;
using calculation::PrayerDay;

constexpr std::int16_t kIshaAngle = -1700;
constexpr int kMinutesOfDate = 1440;

struct City
{
    const char* name;
    Place place; // as the program hands over the shipped one
    std::int16_t offset;
    // Dates on which the clock time of Isha lies in the first half minute: as an event of that date, and as
    // one that is taken from a neighbour.
    int eventsInTheFirstHalfMinute;
    int borrowedInTheFirstHalfMinute;
};

constexpr std::array kCities{City{"Paris", {4885, 235}, 120, 3, 1}, City{"Brussels", {5085, 434}, 120, 3, 2},
                             City{"Amsterdam", {5237, 488}, 120, 3, 2},
                             City{"Moscow", {5575, 3761}, 240, 4, 2}};

// Isha on one date. All times are minutes from the date's 0:00.
struct IshaOfDate
{
    double ofThisEvening = 0.0;
    double ofTheEveningBefore = 0.0;
    double shown = 0.0; // before it is rounded
    int announced = 0;  // the slot

    [[nodiscard]] static bool IsWithinDate(double time) { return time >= 0.0 && time < kMinutesOfDate; }
    [[nodiscard]] bool IsAbsent() const
    {
        return !IsWithinDate(ofThisEvening) && !IsWithinDate(ofTheEveningBefore);
    }
    [[nodiscard]] bool IsThereTwice() const
    {
        return IsWithinDate(ofThisEvening) && IsWithinDate(ofTheEveningBefore);
    }
};

// The day counts on from 1 January.
IshaOfDate IshaOn(const City& city, std::int16_t year, std::int16_t dayOfYear)
{
    const auto minutes = [](double days) { return (days + 0.5) * kMinutesOfDate; };
    PrayerDay day;
    day.SetPlaceAndDate(city.place, DaysSince2000(dayOfYear, 1, year) - city.offset / double{kMinutesOfDate});
    day.SetTwilightAngles(-18.0, kIshaAngle / 100.0);
    Calculator calculator;
    calculator.SetHorParams(city.place, city.offset, dayOfYear, 1, year);
    calculator.SetHorAngle(-1800, kIshaAngle);
    return {minutes(day.OfSolarDay(Event::Isha, 0)), minutes(day.OfSolarDay(Event::Isha, -1)),
            minutes(day.WithinDate(Event::Isha)), calculator.Horarium(10)};
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

void CheckDate(const IshaOfDate& isha, std::int32_t date, std::int16_t year, Counts& counts)
{
    EXPECT_GT(isha.announced, 0);
    if (isha.shown < 0.5) {
        ++(isha.IsAbsent() ? counts.borrowedInTheFirstHalfMinute : counts.eventsInTheFirstHalfMinute);
        EXPECT_EQ(isha.announced, 1);
    }
    if (isha.IsAbsent()) {
        ++counts.datesWithout;
        EXPECT_GE(date, DaysSince2000(26, 5, year));
        EXPECT_LE(date, DaysSince2000(4, 6, year));
    }
    if (isha.IsThereTwice()) {
        ++counts.datesWithTwo;
        EXPECT_GE(date, DaysSince2000(22, 7, year));
        EXPECT_LE(date, DaysSince2000(28, 7, year));
        EXPECT_LT(isha.ofTheEveningBefore, 3.0) << "the Isha that is not announced";
        EXPECT_GE(isha.ofThisEvening, 1437.0);
        EXPECT_EQ(isha.shown, isha.ofThisEvening);
    }
}

// The alerts of a date and of the next are a day apart, but for the two nights a year.
void CheckNight(const IshaOfDate& isha, const IshaOfDate& next, Counts& counts)
{
    const int apart = kMinutesOfDate + next.announced - isha.announced;
    if (apart < kMinutesOfDate / 2) {
        ++counts.nightsWithTwoAlerts;
        EXPECT_TRUE(isha.IsAbsent() || next.IsAbsent());
        EXPECT_EQ(isha.announced, 1439);
        EXPECT_EQ(next.announced, 1);
    } else if (apart > kMinutesOfDate * 3 / 2) {
        ++counts.nightsWithNoAlert;
        EXPECT_TRUE(next.IsThereTwice());
    }
}

TEST(IshaAfterMidnight, fourYearsOfFourCities_eachDateHasOneAlert_twoComeInOneNightAYear)
{
    int events = 0;
    int borrowed = 0;
    for (const City& city : kCities) {
        Counts ofCity;
        for (std::int16_t year = 2026; year < 2030; ++year) {
            Counts counts;
            IshaOfDate isha = IshaOn(city, year, 1);
            for (std::int16_t day = 1; day <= 366; ++day) {
                SCOPED_TRACE(testing::Message() << city.name << ' ' << year << ' ' << day);
                CheckDate(isha, DaysSince2000(day, 1, year), year, counts);
                const IshaOfDate next = IshaOn(city, year, static_cast<std::int16_t>(day + 1));
                CheckNight(isha, next, counts);
                isha = next;
            }
            SCOPED_TRACE(testing::Message() << city.name << ' ' << year);
            EXPECT_EQ(counts.datesWithout, 1);
            EXPECT_EQ(counts.datesWithTwo, 1);
            EXPECT_EQ(counts.nightsWithTwoAlerts, 1);
            EXPECT_EQ(counts.nightsWithNoAlert, 1);
            ofCity.eventsInTheFirstHalfMinute += counts.eventsInTheFirstHalfMinute;
            ofCity.borrowedInTheFirstHalfMinute += counts.borrowedInTheFirstHalfMinute;
        }
        EXPECT_EQ(ofCity.eventsInTheFirstHalfMinute, city.eventsInTheFirstHalfMinute) << city.name;
        EXPECT_EQ(ofCity.borrowedInTheFirstHalfMinute, city.borrowedInTheFirstHalfMinute) << city.name;
        events += ofCity.eventsInTheFirstHalfMinute;
        borrowed += ofCity.borrowedInTheFirstHalfMinute;
    }
    EXPECT_EQ(events, 13);
    EXPECT_EQ(borrowed, 7);
}

} // namespace
