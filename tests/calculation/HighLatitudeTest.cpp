// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Angle.h"
#include "calculation/Days.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

using calculation::DaysSince2000;
using calculation::Event;
using calculation::Place;
using calculation::PrayerDay;

constexpr double kMinute = 1.0 / kMinutesPerDay;
constexpr Place kLondon{5151, -13};
constexpr Place kTromso{6965, 1896};

Place At45(const Place& place)
{
    return {static_cast<Short>(place.latitude < 0 ? -4500 : 4500), place.longitude};
}

// Local time in the zone of the place, in whole hours.
PrayerDay ZoneDay(const Place& place, std::int32_t date, double fajrAngle = -18.0, double ishaAngle = -17.0)
{
    return DayOf(place, date - std::round(place.LongitudeDegrees() / 15.0) / 24.0, fajrAngle, ishaAngle);
}

double Altitude(PrayerDay& day, Event event)
{
    return day.Track().Elevation(day.OfSolarDay(event, 0), day.OwnLatitude());
}

void ExpectSameDay(PrayerDay one, PrayerDay other)
{
    for (const NamedEvent& event : kEvents) {
        ASSERT_NEAR(one.OfSolarDay(event.event, 0), other.OfSolarDay(event.event, 0), 1e-9) << event.name;
        ASSERT_NEAR(one.WithinDate(event.event), other.WithinDate(event.event), 1e-9) << event.name;
    }
}

// In London the sun reaches 18 degrees for the last time in May: the portion of the night replaces the event
// long before.
TEST(HighLatitude, throughTheSeasons_fajrAndIshaWithoutAJump)
{
    int limited = 0;
    PrayerDay before = ZoneDay(kLondon, DaysSince2000(31, 12, 2025));
    for (int number = 0; number < 365; ++number) {
        PrayerDay day = ZoneDay(kLondon, DaysSince2000(1, 1, 2026) + number);
        for (const Event event : {Event::Fajr, Event::Isha}) {
            ASSERT_NEAR(day.OfSolarDay(event, 0), before.OfSolarDay(event, 0), 4.0 * kMinute) << number;
        }
        limited += Altitude(day, Event::Fajr) < -17.9999 ? 0 : 1;
        before = day;
    }
    EXPECT_GT(limited, 0);
    EXPECT_LT(limited, 365);
}

// The first and the last of these days have a neighbour with a sunrise of its own, which must not affect
// them.
TEST(HighLatitude, everyDayWithoutSunriseOrSunset_wholeDayOfLatitude45)
{
    struct Row
    {
        Place place;
        int leastFound;
    };
    for (const auto& [place, leastFound] :
         {Row{{6606, 6114}, 15}, Row{{6579, 7137}, 15}, Row{{-6610, 11219}, 15}, Row{kTromso, 14 * 100},
          Row{{-7846, 10684}, 14 * 190}}) {
        int found = 0;
        int seams = 0;
        bool was45 = false;
        for (int number = 0; number < 14 * 365; ++number) {
            const std::int32_t date = DaysSince2000(1, 1, 2015) + number;
            PrayerDay day = ZoneDay(place, date, -20.0, -18.0);
            PrayerDay day45 = ZoneDay(At45(place), date, -20.0, -18.0);
            const bool is45 = day.OfSolarDay(Event::Sunrise, 0) == day45.OfSolarDay(Event::Sunrise, 0);
            seams += is45 != was45 ? 1 : 0;
            was45 = is45;
            if (is45) {
                ++found;
                SCOPED_TRACE(testing::Message() << place.latitude << ' ' << number);
                ASSERT_NO_FATAL_FAILURE(ExpectSameDay(day, day45));
            }
        }
        EXPECT_GE(found, leastFound) << place.latitude;
        EXPECT_GE(seams, 27) << place.latitude;
    }
}

// The first and the last days with a sunrise have a neighbour of latitude 45, and so no night to divide. On
// some of them the centre of the noon sun is below the horizon or hardly above it: there is no shadow for
// Asr.
TEST(HighLatitude, everyDayOfAYear_inOrderTwilightWithinTheNightAndAsrWithinTheAfternoon)
{
    int seams = 0;
    int withoutShadow = 0;
    for (const Place& place : {kTromso, Place{8999, 0}, Place{9000, 0}, Place{-9000, 0}}) {
        bool was45 = true;
        for (int number = 0; number < 366; ++number) {
            SCOPED_TRACE(testing::Message() << place.latitude << ' ' << number);
            const std::int32_t date = DaysSince2000(1, 1, 2026) + number;
            PrayerDay day = ZoneDay(place, date);
            PrayerDay day45 = ZoneDay(At45(place), date);
            const double transit = day.OfSolarDay(Event::Transit, 0);
            const double sunset = day.OfSolarDay(Event::Sunset, 0);
            const bool is45 = sunset == day45.OfSolarDay(Event::Sunset, 0);
            seams += is45 != was45 && place.latitude == kTromso.latitude ? 1 : 0;
            was45 = is45;
            double before = transit - 0.5 - kMinute;
            for (const NamedEvent& event : kEvents) {
                const double time = day.OfSolarDay(event.event, 0);
                ASSERT_LT(before, time) << event.name;
                before = time;
            }
            ASSERT_LT(before, transit + 0.5 + kMinute);
            if (is45 || Altitude(day, Event::Transit) > 0.2) {
                continue;
            }
            ++withoutShadow;
            const double afternoon45 = day45.OfSolarDay(Event::Sunset, 0) - transit;
            for (const Event event : {Event::AsrOneLength, Event::AsrTwoLengths}) {
                const double part = (day45.OfSolarDay(event, 0) - transit) / afternoon45;
                EXPECT_NEAR(day.OfSolarDay(event, 0), transit + part * (sunset - transit), 1e-6);
            }
        }
    }
    EXPECT_EQ(seams, 4);
    EXPECT_GE(withoutShadow, 4);
}

// If the centre of the noon sun is only just high enough, Asr is that of its own shadow.
TEST(HighLatitude, noonSunWithShadow_asrOfItsOwnShadow)
{
    constexpr double kDegree = calculation::kRadiansPerDegree;
    int low = 0;
    for (Short latitude = 6500; latitude <= 9000; latitude += 25) {
        for (int number = 0; number < 365; ++number) {
            PrayerDay day = ZoneDay({latitude, 1896}, DaysSince2000(1, 1, 2026) + number);
            const double noon = Altitude(day, Event::Transit);
            const bool isOfItsOwnLatitude = std::abs(Altitude(day, Event::Sunset) + 0.8333) < 1e-6;
            if (noon <= 0.2 || !isOfItsOwnLatitude) {
                continue;
            }
            low += noon < 2.0 ? 1 : 0;
            const double shadow = 1.0 / std::tan(noon * kDegree);
            ASSERT_NEAR(Altitude(day, Event::AsrOneLength), std::atan(1.0 / (shadow + 1.0)) / kDegree, 1e-6)
                << latitude << ' ' << number;
            ASSERT_NEAR(Altitude(day, Event::AsrTwoLengths), std::atan(1.0 / (shadow + 2.0)) / kDegree, 1e-6)
                << latitude << ' ' << number;
        }
    }
    EXPECT_GT(low, 100);
}

TEST(HighLatitude, anglesOfHalfTheNight_fajrAndIshaInOrder)
{
    PrayerDay day = ZoneDay(kLondon, DaysSince2000(21, 6, 2026), -30.0, -30.0);
    EXPECT_NEAR(day.OfSolarDay(Event::Isha, -1), day.OfSolarDay(Event::Fajr, 0), 1e-9);
    // The portion for larger angles is limited to half the night.
    ExpectSameDay(day, ZoneDay(kLondon, DaysSince2000(21, 6, 2026), -60.0, -90.0));
}

} // namespace
