// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Angle.h"
#include "calculation/Calculator.h"
#include "calculation/Calendar.h"
#include "calculation/PrayerDay.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>

namespace {

using calculation::Calculator;
using calculation::DaysSince2000;
using calculation::Event;
using calculation::Place;
using calculation::PrayerDay;

constexpr double kMinute = 1.0 / 1440.0;

PrayerDay DayAt(const Place& place, std::int32_t date, double fajrAngle = -18.0, double ishaAngle = -17.0)
{
    PrayerDay day;
    day.SetPlaceAndDate(place, date - std::round(place.LongitudeDegrees() / 15.0) / 24.0);
    day.SetTwilightAngles(fajrAngle, ishaAngle);
    return day;
}

constexpr std::array<Event, 7> kEvents{Event::Fajr,         Event::Sunrise,       Event::Transit,
                                       Event::AsrOneLength, Event::AsrTwoLengths, Event::Sunset,
                                       Event::Isha};

void ExpectSameDay(PrayerDay one, PrayerDay other)
{
    for (const Event event : kEvents) {
        EXPECT_NEAR(one.WithinDate(event), other.WithinDate(event), 1e-9) << static_cast<int>(event);
    }
}

constexpr Place kLondon{5151, -13};
constexpr Place kTromso{6965, 1896};
constexpr Place kTromsoMeridian45{4500, 1896};
constexpr Place kVostok{-7846, 10684};
constexpr Place kVostokMeridian45{-4500, 10684};

TEST(HighLatitude, nightWithoutTwilight_fajrAndIshaAtTheirPortionOfTheNight)
{
    PrayerDay day = DayAt(kLondon, DaysSince2000(21, 6, 2026));
    const double sunrise = day.OfSolarDay(Event::Sunrise, 0);
    const double sunset = day.OfSolarDay(Event::Sunset, 0);
    const double nightBefore = sunrise - day.OfSolarDay(Event::Sunset, -1);
    const double nightAfter = day.OfSolarDay(Event::Sunrise, 1) - sunset;
    EXPECT_NEAR(day.OfSolarDay(Event::Fajr, 0), sunrise - 18.0 / 60.0 * nightBefore, 1e-9);
    EXPECT_NEAR(day.OfSolarDay(Event::Isha, 0), sunset + 17.0 / 60.0 * nightAfter, 1e-9);
}

TEST(HighLatitude, twilightWithinItsPortion_untouched)
{
    PrayerDay day = DayAt(kLondon, DaysSince2000(21, 12, 2026));
    const double fajr = day.Track().Elevation(day.OfSolarDay(Event::Fajr, 0), day.OwnLatitude());
    const double isha = day.Track().Elevation(day.OfSolarDay(Event::Isha, 0), day.OwnLatitude());
    EXPECT_NEAR(fajr, -18.0, 1e-6);
    EXPECT_NEAR(isha, -17.0, 1e-6);
}

// In London the sun is under 18 degrees for the last time in May: the event gives way to the portion long
// before.
TEST(HighLatitude, throughTheSeasons_fajrAndIshaWithoutAJump)
{
    bool wasBounded = false;
    bool wasTrue = false;
    double fajrBefore = DayAt(kLondon, DaysSince2000(31, 12, 2025)).OfSolarDay(Event::Fajr, 0);
    double ishaBefore = DayAt(kLondon, DaysSince2000(31, 12, 2025)).OfSolarDay(Event::Isha, 0);
    for (int number = 0; number < 365; ++number) {
        PrayerDay day = DayAt(kLondon, DaysSince2000(1, 1, 2026) + number);
        const double fajr = day.OfSolarDay(Event::Fajr, 0);
        const double isha = day.OfSolarDay(Event::Isha, 0);
        ASSERT_LT(std::abs(fajr - fajrBefore), 4.0 * kMinute) << number;
        ASSERT_LT(std::abs(isha - ishaBefore), 4.0 * kMinute) << number;
        const bool isAtAngle = day.Track().Elevation(fajr, day.OwnLatitude()) < -17.9999;
        (isAtAngle ? wasTrue : wasBounded) = true;
        fajrBefore = fajr;
        ishaBefore = isha;
    }
    EXPECT_TRUE(wasBounded);
    EXPECT_TRUE(wasTrue);
}

TEST(HighLatitude, polarNight_wholeDayOfLatitude45)
{
    ExpectSameDay(DayAt(kTromso, DaysSince2000(21, 12, 2026)),
                  DayAt(kTromsoMeridian45, DaysSince2000(21, 12, 2026)));
    ExpectSameDay(DayAt(kVostok, DaysSince2000(21, 6, 2026)),
                  DayAt(kVostokMeridian45, DaysSince2000(21, 6, 2026)));
}

TEST(HighLatitude, midnightSun_wholeDayOfLatitude45)
{
    ExpectSameDay(DayAt(kTromso, DaysSince2000(21, 6, 2026)),
                  DayAt(kTromsoMeridian45, DaysSince2000(21, 6, 2026)));
    ExpectSameDay(DayAt(kVostok, DaysSince2000(21, 12, 2026)),
                  DayAt(kVostokMeridian45, DaysSince2000(21, 12, 2026)));
}

TEST(HighLatitude, daysBesidesThem_ownSunriseAndSunset)
{
    for (const std::int32_t date : {DaysSince2000(10, 3, 2026), DaysSince2000(10, 10, 2026)}) {
        PrayerDay day = DayAt(kTromso, date);
        for (const Event event : {Event::Sunrise, Event::Sunset}) {
            const double altitude = day.Track().Elevation(day.OfSolarDay(event, 0), day.OwnLatitude());
            EXPECT_NEAR(altitude, -0.8333, 1e-6);
        }
    }
}

// The first and the last days with a sunrise have a neighbour of latitude 45, and so no night to divide.
TEST(HighLatitude, everyDayOfAYear_fajrAndIshaKeepToTheNight)
{
    int seams = 0;
    bool was45 = false;
    for (int number = 0; number < 365; ++number) {
        const std::int32_t date = DaysSince2000(1, 1, 2026) + number;
        PrayerDay day = DayAt(kTromso, date);
        PrayerDay day45 = DayAt(kTromsoMeridian45, date);
        const double transit = day.OfSolarDay(Event::Transit, 0);
        const double sunrise = day.OfSolarDay(Event::Sunrise, 0);
        const double sunset = day.OfSolarDay(Event::Sunset, 0);
        const bool is45 = sunrise == day45.OfSolarDay(Event::Sunrise, 0);
        seams += number > 0 && is45 != was45 ? 1 : 0;
        was45 = is45;
        const double fajr = day.OfSolarDay(Event::Fajr, 0);
        const double isha = day.OfSolarDay(Event::Isha, 0);
        ASSERT_LT(fajr, sunrise) << number;
        ASSERT_GT(fajr, transit - 0.5 - kMinute) << number;
        ASSERT_GT(isha, sunset) << number;
        ASSERT_LT(isha, transit + 0.5 + kMinute) << number;
    }
    EXPECT_EQ(seams, 4);
}

// The first and the last of these days have a neighbour with a sunrise of its own, which must not show in
// them.
TEST(HighLatitude, everyDayWithoutSunriseOrSunset_wholeDayOfLatitude45)
{
    constexpr std::array<Place, 3> kPlaces{{{6606, 6114}, {6579, 7137}, {-6610, 11219}}};
    for (const Place& place : kPlaces) {
        const Place place45{static_cast<std::int16_t>(place.latitude < 0 ? -4500 : 4500), place.longitude};
        int found = 0;
        int seams = 0;
        bool was45 = false;
        for (int number = 0; number < 14 * 365; ++number) {
            const std::int32_t date = DaysSince2000(1, 1, 2015) + number;
            PrayerDay day = DayAt(place, date, -20.0, -18.0);
            PrayerDay day45 = DayAt(place45, date, -20.0, -18.0);
            const bool is45 = day.OfSolarDay(Event::Sunrise, 0) == day45.OfSolarDay(Event::Sunrise, 0);
            seams += is45 != was45 ? 1 : 0;
            was45 = is45;
            if (!is45) {
                continue;
            }
            ++found;
            for (const Event event : kEvents) {
                ASSERT_NEAR(day.OfSolarDay(event, 0), day45.OfSolarDay(event, 0), 1e-9)
                    << place.latitude << ' ' << number << ' ' << static_cast<int>(event);
            }
        }
        EXPECT_GT(found, 14) << place.latitude;
        EXPECT_GE(seams, 27) << place.latitude;
    }
}

// In Tromso on these days the noon sun is up, but not its centre, or hardly.
TEST(HighLatitude, noonSunWithoutShadow_asrAtItsPartOfTheAfternoonOfLatitude45)
{
    int found = 0;
    for (int number = 0; number < 365; ++number) {
        const std::int32_t date = DaysSince2000(1, 1, 2026) + number;
        PrayerDay day = DayAt(kTromso, date);
        PrayerDay day45 = DayAt(kTromsoMeridian45, date);
        const double transit = day.OfSolarDay(Event::Transit, 0);
        const double noon = day.Track().Elevation(transit, day.OwnLatitude());
        if (noon <= -0.8333 || noon > 0.2) {
            continue;
        }
        ++found;
        const double afternoon = day.OfSolarDay(Event::Sunset, 0) - transit;
        const double afternoon45 = day45.OfSolarDay(Event::Sunset, 0) - transit;
        for (const Event event : {Event::AsrOneLength, Event::AsrTwoLengths}) {
            const double part = (day45.OfSolarDay(event, 0) - transit) / afternoon45;
            EXPECT_NEAR(day.OfSolarDay(event, 0), transit + part * afternoon, 1e-6) << number;
        }
        EXPECT_LT(day.OfSolarDay(Event::AsrTwoLengths, 0), day.OfSolarDay(Event::Sunset, 0)) << number;
    }
    EXPECT_GE(found, 4);
}

// And on all others its centre is high enough, be it by little, and Asr is that of its own shadow.
TEST(HighLatitude, noonSunWithShadow_asrOfItsOwnShadow)
{
    int low = 0;
    for (int latitude = 6500; latitude <= 9000; latitude += 25) {
        const Place place{static_cast<std::int16_t>(latitude), 1896};
        for (int number = 0; number < 365; ++number) {
            PrayerDay day = DayAt(place, DaysSince2000(1, 1, 2026) + number);
            const double noon = day.Track().Elevation(day.OfSolarDay(Event::Transit, 0), day.OwnLatitude());
            const double sunset = day.Track().Elevation(day.OfSolarDay(Event::Sunset, 0), day.OwnLatitude());
            const bool isOfItsOwnLatitude = std::abs(sunset + 0.8333) < 1e-6;
            if (noon <= 0.2 || !isOfItsOwnLatitude) {
                continue;
            }
            low += noon < 2.0 ? 1 : 0;
            constexpr double kDegree = calculation::kRadiansPerDegree;
            double lengths = 1.0;
            for (const Event event : {Event::AsrOneLength, Event::AsrTwoLengths}) {
                const double asr = day.Track().Elevation(day.OfSolarDay(event, 0), day.OwnLatitude());
                ASSERT_NEAR(asr, std::atan(1.0 / (1.0 / std::tan(noon * kDegree) + lengths)) / kDegree, 1e-6)
                    << latitude << ' ' << number;
                lengths += 1.0;
            }
        }
    }
    EXPECT_GT(low, 100);
}

TEST(HighLatitude, anglesOfHalfTheNight_fajrAndIshaInOrder)
{
    PrayerDay day = DayAt(kLondon, DaysSince2000(21, 6, 2026), -30.0, -30.0);
    EXPECT_NEAR(day.OfSolarDay(Event::Isha, -1), day.OfSolarDay(Event::Fajr, 0), 1e-9);
    // Larger angles get no more than half the night.
    PrayerDay deeper = DayAt(kLondon, DaysSince2000(21, 6, 2026), -60.0, -90.0);
    ExpectSameDay(day, deeper);
}

TEST(HighLatitude, bothPoles_everyDayAMinuteInOrder)
{
    for (const std::int16_t latitude : {std::int16_t{9000}, std::int16_t{-9000}, std::int16_t{8999}}) {
        for (int number = 0; number < 366; ++number) {
            Calculator calculator;
            calculator.SetHorParams({latitude, 0}, 0, static_cast<std::int16_t>(number + 1), 1, 2026);
            calculator.SetHorAngle(-1800, -1700);
            std::int16_t before = 0;
            for (const std::int16_t slot :
                 {std::int16_t{1}, std::int16_t{2}, std::int16_t{5}, std::int16_t{6}, std::int16_t{7},
                  std::int16_t{9}, std::int16_t{10}}) {
                const std::int16_t minute = calculator.Horarium(slot);
                ASSERT_GE(minute, before) << latitude << ' ' << number << ' ' << slot;
                ASSERT_LT(minute, 1440) << latitude << ' ' << number << ' ' << slot;
                before = minute;
            }
        }
    }
}

} // namespace
