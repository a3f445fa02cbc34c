// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "calculation/Calculator.h"
#include "calculation/Calendar.h"
#include "calculation/PrayerDay.h"

#include <array>
#include <cstdint>

using Short = std::int16_t;

constexpr double kMinutesPerDay = 1440.0;

struct NamedEvent
{
    calculation::Event event;
    Short slot;
    const char* name;
};

// The events in the order of a day.
constexpr std::array<NamedEvent, 7> kEvents{{{calculation::Event::Fajr, 1, "Fajr"},
                                             {calculation::Event::Sunrise, 2, "sunrise"},
                                             {calculation::Event::Transit, 5, "transit"},
                                             {calculation::Event::AsrOneLength, 6, "Asr of one length"},
                                             {calculation::Event::AsrTwoLengths, 7, "Asr of two lengths"},
                                             {calculation::Event::Sunset, 9, "sunset"},
                                             {calculation::Event::Isha, 10, "Isha"}}};

// utNoon: the date's local noon in days of UT from 2000 January 1, 12h; angles in degrees.
[[nodiscard]] inline calculation::PrayerDay DayOf(const calculation::Place& place, double utNoon,
                                                  double fajrAngle = -18.0, double ishaAngle = -17.0)
{
    calculation::PrayerDay day;
    day.SetPlaceAndDate(place, utNoon);
    day.SetTwilightAngles(fajrAngle, ishaAngle);
    return day;
}

// Minutes of the clock from the date's 0:00 for a time in days from its noon.
[[nodiscard]] constexpr double Minutes(double daysFromNoon)
{
    return (daysFromNoon + 0.5) * kMinutesPerDay;
}

// With the twilight angles that a Calculator starts with, -18 and -17 degrees.
[[nodiscard]] inline calculation::Calculator CalculatorOf(const calculation::Place& place, Short offset,
                                                          Short day, Short month, Short year)
{
    calculation::Calculator calculator;
    calculator.SetHorParams(place, offset, day, month, year);
    return calculator;
}
