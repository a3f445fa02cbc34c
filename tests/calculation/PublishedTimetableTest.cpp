// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calendar.h"
#include "calculation/PrayerDay.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

// Rows of timetables that authorities have published. They don't print the moment itself: they add minutes
// for precaution and round, so that what is held is how much later than the moment the printed minute is.
namespace {

using calculation::Event;
using calculation::Place;
using calculation::PrayerDay;

// The same printed minute on some days in a row of 2026.
struct SameMinute
{
    std::int16_t day;
    std::int16_t month;
    int days;
    int hour;
    int minute;
};

struct Authority
{
    Place place;
    int offsetMinutes;
    double fajrAngle;
    double ishaAngle;
};

struct Timetable
{
    std::string name;
    Authority authority;
    Event event;
    // Minutes from the moment to the printed minute.
    double least;
    double most;
    std::vector<SameMinute> runs;
};

void PrintTo(const Timetable& timetable, std::ostream* out)
{
    *out << timetable.name;
}

class PublishedTimetable : public ::testing::TestWithParam<Timetable>
{
};

// Indonesia's Ministry of Religious Affairs (Kemenag), Ramadan 1447 for Jakarta, 20 and 18 degrees. Its
// criteria, in the notes of its timetable of Ramadan 1433, add 2 minutes of precaution (ihtiyat), and take 2
// from sunrise; a broken minute counts as the next, so that 2 to 3 minutes lie between. At noon it is 3 to 4,
// as for the half of the sun's disc that has to pass the meridian; at sunset half a minute more, as for a
// horizon seen from a height. A place elsewhere in the city moves all by some tenths of a minute. Dawn as in
// Bisnis.com, February 2026; the other times as in Media Indonesia, 3 to 12 March 2026.
const Authority kKemenagJakarta{{-617, 10682}, 420, -20.0, -18.0};

// Turkey's Presidency of Religious Affairs (Diyanet), Ramadan 1447 for Ankara and Istanbul, 18 and 17
// degrees: dawn and night without precaution, within a minute; at sunset one (temkin) of 6 to 7 minutes. As
// in Sabah, 18 February 2026.
const Authority kDiyanetAnkara{{3993, 3286}, 180, -18.0, -17.0};
const Authority kDiyanetIstanbul{{4101, 2898}, 180, -18.0, -17.0};

INSTANTIATE_TEST_SUITE_P(
    authorities, PublishedTimetable,
    ::testing::Values(
        Timetable{"jakartaFajr",
                  kKemenagJakarta,
                  Event::Fajr,
                  1.9,
                  2.95,
                  {{19, 2, 1, 4, 41}, {20, 2, 7, 4, 42}, {27, 2, 18, 4, 43}, {17, 3, 4, 4, 42}}},
        Timetable{"jakartaSunrise", kKemenagJakarta, Event::Sunrise, -2.0, -1.0, {{5, 3, 1, 5, 57}}},
        Timetable{"jakartaDuhr",
                  kKemenagJakarta,
                  Event::Transit,
                  2.7,
                  3.8,
                  {{4, 3, 1, 12, 8}, {5, 3, 1, 12, 7}, {13, 3, 1, 12, 6}}},
        Timetable{"jakartaAsr",
                  kKemenagJakarta,
                  Event::AsrOneLength,
                  2.0,
                  3.0,
                  {{4, 3, 1, 15, 9}, {5, 3, 1, 15, 8}, {13, 3, 1, 15, 11}}},
        Timetable{"jakartaMaghrib",
                  kKemenagJakarta,
                  Event::Sunset,
                  2.8,
                  3.6,
                  {{4, 3, 1, 18, 14}, {5, 3, 1, 18, 13}, {13, 3, 1, 18, 10}}},
        Timetable{"jakartaIsha",
                  kKemenagJakarta,
                  Event::Isha,
                  2.2,
                  3.1,
                  {{4, 3, 1, 19, 23}, {5, 3, 1, 19, 22}, {13, 3, 1, 19, 19}}},
        Timetable{"ankaraFajr",
                  kDiyanetAnkara,
                  Event::Fajr,
                  -0.6,
                  0.6,
                  {{19, 2, 1, 6, 6}, {20, 2, 1, 6, 5}, {21, 2, 1, 6, 4}, {22, 2, 1, 6, 2}, {23, 2, 1, 6, 1}}},
        Timetable{"ankaraMaghrib",
                  kDiyanetAnkara,
                  Event::Sunset,
                  5.9,
                  6.9,
                  {{19, 2, 1, 18, 35},
                   {20, 2, 1, 18, 36},
                   {21, 2, 1, 18, 38},
                   {22, 2, 1, 18, 39},
                   {23, 2, 1, 18, 40}}},
        Timetable{"ankaraIsha",
                  kDiyanetAnkara,
                  Event::Isha,
                  -0.6,
                  0.6,
                  {{19, 2, 1, 19, 54},
                   {20, 2, 1, 19, 55},
                   {21, 2, 1, 19, 56},
                   {22, 2, 1, 19, 57},
                   {23, 2, 1, 19, 58}}},
        Timetable{"istanbulFajr",
                  kDiyanetIstanbul,
                  Event::Fajr,
                  -0.6,
                  0.6,
                  {{19, 2, 1, 6, 22}, {20, 2, 1, 6, 20}, {21, 2, 1, 6, 19}}},
        Timetable{"istanbulMaghrib",
                  kDiyanetIstanbul,
                  Event::Sunset,
                  5.9,
                  6.9,
                  {{19, 2, 1, 18, 49}, {20, 2, 1, 18, 51}, {21, 2, 1, 18, 52}}},
        Timetable{"istanbulIsha",
                  kDiyanetIstanbul,
                  Event::Isha,
                  -1.0,
                  0.0,
                  {{19, 2, 1, 20, 9}, {20, 2, 1, 20, 10}, {21, 2, 1, 20, 11}}}),
    [](const auto& parameter) { return parameter.param.name; });

TEST_P(PublishedTimetable, everyRow_laterByItsPrecautionAlone)
{
    const Timetable& timetable = GetParam();
    const Authority& authority = timetable.authority;
    for (const SameMinute& run : timetable.runs) {
        for (int i = 0; i < run.days; ++i) {
            PrayerDay day;
            day.SetPlaceAndDate(authority.place, calculation::DaysSince2000(run.day, run.month, 2026) + i -
                                                     authority.offsetMinutes / 1440.0);
            day.SetTwilightAngles(authority.fajrAngle, authority.ishaAngle);
            const double moment = (day.WithinDate(timetable.event) + 0.5) * 1440.0;
            const double later = run.hour * 60 + run.minute - moment;
            EXPECT_GE(later, timetable.least) << run.day << '/' << run.month << " and " << i;
            EXPECT_LE(later, timetable.most) << run.day << '/' << run.month << " and " << i;
        }
    }
}

} // namespace
