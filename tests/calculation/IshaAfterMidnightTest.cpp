// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"
#include "calculation/CivilDate.h"
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
constexpr double kMinutesOfDate = 1440.0;

struct City
{
    const char* name;
    Place place; // as the program hands over the shipped one
    std::int16_t offset;
    int eveningsInTheFirstHalfMinute;
};

constexpr std::array kCities{City{"Paris", {4885, 235}, 120, 4}, City{"Brussels", {5085, 434}, 120, 5},
                             City{"Amsterdam", {5237, 488}, 120, 5}, City{"Moscow", {5575, 3761}, 240, 6}};

bool IsWithinDate(double time)
{
    return time >= -0.5 && time < 0.5;
}

double Minutes(double time)
{
    return (time + 0.5) * kMinutesOfDate;
}

struct Counts
{
    int inFirstHalfMinute = 0;
    int datesWithout = 0;
    int datesWithTwo = 0;
};

// One date of a city, of which the day counts on from 1 January: its slot, and what is to be counted.
void CheckDate(const City& city, std::int16_t year, std::int16_t dayOfYear, Counts& counts)
{
    const std::int32_t date = DaysSince2000(dayOfYear, 1, year);
    PrayerDay day;
    day.SetPlaceAndDate(city.place, date - city.offset / kMinutesOfDate);
    day.SetTwilightAngles(-18.0, kIshaAngle / 100.0);
    const double own = day.OfSolarDay(Event::Isha, 0);
    const double earlier = day.OfSolarDay(Event::Isha, -1);
    const double minutes = Minutes(day.WithinDate(Event::Isha));

    Calculator calculator;
    calculator.SetHorParams(city.place, city.offset, dayOfYear, 1, year);
    calculator.SetHorAngle(-1800, kIshaAngle);
    const std::int16_t isha = calculator.Horarium(10);
    EXPECT_GT(isha, 0);
    if (minutes < 0.5) {
        ++counts.inFirstHalfMinute;
        EXPECT_EQ(isha, 1);
    }
    if (!IsWithinDate(own) && !IsWithinDate(earlier)) {
        ++counts.datesWithout;
        EXPECT_GE(date, DaysSince2000(26, 5, year));
        EXPECT_LE(date, DaysSince2000(4, 6, year));
    }
    if (IsWithinDate(own) && IsWithinDate(earlier)) {
        ++counts.datesWithTwo;
        EXPECT_GE(date, DaysSince2000(22, 7, year));
        EXPECT_LE(date, DaysSince2000(28, 7, year));
        EXPECT_LT(Minutes(earlier), 3.0) << "the Isha that is not announced";
        EXPECT_GE(Minutes(own), 1437.0);
        EXPECT_EQ(minutes, Minutes(own));
    }
}

TEST(IshaAfterMidnight, fourYearsOfFourCities_eachDateHasAMinuteThatIsAnnounced)
{
    int evenings = 0;
    for (const City& city : kCities) {
        int eveningsOfCity = 0;
        for (std::int16_t year = 2026; year < 2030; ++year) {
            Counts counts;
            for (std::int16_t day = 1; day <= 366; ++day) {
                SCOPED_TRACE(testing::Message() << city.name << ' ' << year << ' ' << day);
                CheckDate(city, year, day, counts);
            }
            EXPECT_EQ(counts.datesWithout, 1) << city.name << ' ' << year;
            EXPECT_EQ(counts.datesWithTwo, 1) << city.name << ' ' << year;
            eveningsOfCity += counts.inFirstHalfMinute;
        }
        EXPECT_EQ(eveningsOfCity, city.eveningsInTheFirstHalfMinute) << city.name;
        evenings += eveningsOfCity;
    }
    EXPECT_EQ(evenings, 20);
}

} // namespace
